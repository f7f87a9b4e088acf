// SPDX-License-Identifier: Apache-2.0
#include "Contract.h"

namespace oci_test {

test_support::TlsServer& TheServer() {
  static test_support::TlsServer server;
  return server;
}

Address AddressOf(Transport transport) {
  auto& server = TheServer();
  if (transport == Transport::kSocket)
    return {server.Local().ConnectString(), server.Local().User(), server.Local().Password()};
  return {server.ConnectString() + "?ssl-ca=" + server.Authority().string(), server.User(),
          server.Password()};
}

void ConnectTo(Client& client, const Address& address) {
  client.Connect(address.connect_string, address.user, address.password);
}

std::unique_ptr<Client> Contract::Another() const {
  auto another = std::make_unique<Client>();
  ConnectTo(*another, AddressOf(GetParam()));
  return another;
}

void Contract::Table(const std::string& name, const std::string& columns) {
  Drop("TABLE " + name);
  MustExec(client, "CREATE TABLE " + name + " (" + columns + ")");
}

std::string NameOf(Transport transport) { return transport == Transport::kSocket ? "Socket" : "Tls"; }

std::string TransportName(const testing::TestParamInfo<Transport>& info) { return NameOf(info.param); }

}  // namespace oci_test
