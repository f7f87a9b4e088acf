// SPDX-License-Identifier: Apache-2.0
// TlsServer is a database server for tests on a port of 127.0.0.1 (and on its socket), with an account that
// has a password. By default it speaks TLS with a certificate for 127.0.0.1 and localhost that an authority
// of its own has signed. Everything lies in a temporary folder and goes with the object. Not thread-safe;
// create it before the process starts threads.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "TemporaryFolder.h"
#include "localdb/LocalServer.h"

namespace test_support {

enum class Encryption { kOffered, kNone };

// A port of 127.0.0.1 that nobody else is given while the object lives: it is bound, not listened on, and in
// a way that lets the server bind it too.
class ReservedPort {
 public:
  ReservedPort();
  ~ReservedPort();
  ReservedPort(const ReservedPort&) = delete;
  ReservedPort& operator=(const ReservedPort&) = delete;
  int Number() const { return m_number; }

 private:
  int m_socket;
  int m_number = 0;
};

class TlsServer {
 public:
  explicit TlsServer(Encryption encryption = Encryption::kOffered);

  std::string Host() const { return "127.0.0.1"; }
  int Port() const { return m_port.Number(); }
  std::string Schema() const { return "lkbench"; }
  std::string User() const { return "distant"; }  // logs in with the password, encrypted or not
  std::string UserWithCertificate() const { return "certified"; }  // and must show the client's certificate
  std::string Password() const { return "s3cret #1"; }
  std::string ConnectString() const;  // "mariadb://127.0.0.1:PORT/SCHEMA" without any option

  std::filesystem::path Authority() const { return Certificate("ca"); }
  std::filesystem::path OtherAuthority() const { return Certificate("other"); }  // did not sign the server's
  std::filesystem::path ClientCertificate() const { return Certificate("client"); }
  std::filesystem::path ClientKey() const { return Key("client"); }

  const localdb::LocalServer& Local() const { return *m_server; }
  void Restart();  // e.g. after the server was killed; the same port and data

 private:
  std::filesystem::path Certificate(const std::string& name) const;
  std::filesystem::path Key(const std::string& name) const;
  void MakeCertificates() const;
  void WriteAccounts() const;
  void Start();

  TemporaryFolder m_folder;
  ReservedPort m_port;
  Encryption m_encryption;
  std::optional<localdb::LocalServer> m_server;
};

}  // namespace test_support
