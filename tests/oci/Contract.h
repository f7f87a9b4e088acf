// SPDX-License-Identifier: Apache-2.0
// The contract of the OCI library, checked against a server that the program starts: every case runs over a
// unix socket and over TCP with TLS. Cases of one transport share the server; each has a schema object of its
// own or cleans up before it starts.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "Client.h"
#include "TlsServer.h"

namespace oci_test {

// The one server of the program; made by its first user, before any thread.
test_support::TlsServer& TheServer();

enum class Transport { kSocket, kTls };

struct Address {
  std::string connect_string;
  std::string user;
  std::string password;
};
Address AddressOf(Transport transport);

void ConnectTo(Client& client, const Address& address);

class Contract : public testing::TestWithParam<Transport> {
 protected:
  Contract() { ConnectTo(client, AddressOf(GetParam())); }

  // A second session over the same transport.
  std::unique_ptr<Client> Another() const;

  // DROP … of what an earlier case left, if it did.
  void Drop(const std::string& object) { Exec(client, "DROP " + object); }
  // Makes a table anew.
  void Table(const std::string& name, const std::string& columns);

  Client client;
};

std::string NameOf(Transport transport);
std::string TransportName(const testing::TestParamInfo<Transport>& info);

}  // namespace oci_test

// A suite of its own in which every case runs over both transports.
#define OCI_CONTRACT_SUITE(suite)                                                                    \
  class suite : public oci_test::Contract {};                                                        \
  INSTANTIATE_TEST_SUITE_P(Over, suite,                                                              \
                           testing::Values(oci_test::Transport::kSocket, oci_test::Transport::kTls), \
                           oci_test::TransportName)
