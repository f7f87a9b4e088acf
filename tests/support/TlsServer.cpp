// SPDX-License-Identifier: Apache-2.0
#include "TlsServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace test_support {

namespace fs = std::filesystem;

namespace {

// The folder's path has no character that a shell minds.
void Openssl(const fs::path& folder, const std::string& arguments) {
  const std::string log = folder / "openssl.log";
  if (std::system(("cd " + folder.string() + " && openssl " + arguments + " >" + log + " 2>&1").c_str()) != 0)
    throw std::runtime_error("openssl " + arguments + " failed, see " + log);
}

void MakeAuthority(const fs::path& folder, const std::string& name) {
  Openssl(folder,
          "req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -noenc -days 2 -subj /CN=test-" + name +
              " -keyout " + name + "-key.pem -out " + name + ".pem");
}

void MakeSigned(const fs::path& folder, const std::string& name, const std::string& extension) {
  Openssl(folder,
          "req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -noenc -days 2 -subj /CN=test-" + name +
              " -CA ca.pem -CAkey ca-key.pem -addext basicConstraints=critical,CA:FALSE -addext " +
              extension + " -keyout " + name + "-key.pem -out " + name + ".pem");
}

}  // namespace

ReservedPort::ReservedPort() : m_socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  const int yes = 1;
  setsockopt(m_socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  if (bind(m_socket, generic, size) != 0 || getsockname(m_socket, generic, &size) != 0)
    throw std::runtime_error("no port of 127.0.0.1 is free");
  m_number = ntohs(address.sin_port);
}

ReservedPort::~ReservedPort() { close(m_socket); }

TlsServer::TlsServer(Encryption encryption) : m_encryption(encryption) {
  if (encryption == Encryption::kOffered) MakeCertificates();
  WriteAccounts();
  Start();
}

void TlsServer::Restart() {
  m_server.reset();
  Start();
}

std::string TlsServer::ConnectString() const {
  return "mariadb://" + Host() + ":" + std::to_string(Port()) + "/" + Schema();
}

fs::path TlsServer::Certificate(const std::string& name) const { return m_folder.Path() / (name + ".pem"); }
fs::path TlsServer::Key(const std::string& name) const { return m_folder.Path() / (name + "-key.pem"); }

void TlsServer::MakeCertificates() const {
  MakeAuthority(m_folder.Path(), "ca");
  MakeAuthority(m_folder.Path(), "other");
  MakeSigned(m_folder.Path(), "server", "subjectAltName=IP:127.0.0.1,DNS:localhost");
  MakeSigned(m_folder.Path(), "client", "extendedKeyUsage=clientAuth");
}

void TlsServer::WriteAccounts() const {
  std::ofstream script(m_folder.Path() / "accounts.sql");
  const std::string identified = "@'127.0.0.1' IDENTIFIED BY '" + Password() + "'";
  for (const auto& [user, demand] :
       {std::pair{User(), "REQUIRE NONE"}, {UserWithCertificate(), "REQUIRE X509"}})
    script << "CREATE OR REPLACE USER " << user << identified << " " << demand << ";\n"
           << "GRANT ALL PRIVILEGES ON " << Schema() << ".* TO " << user << "@'127.0.0.1';\n";
}

void TlsServer::Start() {
  localdb::Options options;
  options.tcp_port = m_port.Number();
  options.server_arguments = {"--init-file=" + (m_folder.Path() / "accounts.sql").string()};
  if (m_encryption == Encryption::kOffered) {
    options.server_arguments.push_back("--ssl-ca=" + Authority().string());
    options.server_arguments.push_back("--ssl-cert=" + Certificate("server").string());
    options.server_arguments.push_back("--ssl-key=" + Key("server").string());
  }
  m_server.emplace(m_folder.Path() / "db", options);
}

}  // namespace test_support
