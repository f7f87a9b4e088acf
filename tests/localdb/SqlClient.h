// SPDX-License-Identifier: Apache-2.0
// One connection to a server, to look at what it holds. Throws std::runtime_error with the server's text.
#pragma once

#include <mysql.h>

#include <memory>
#include <string>

#include "localdb/LocalServer.h"

struct TcpLogin {
  std::string host;
  int port = 0;
  std::string user;
  std::string password;
  std::string authority;    // verifies the server's certificate against this file
  std::string certificate;  // of the client
  std::string key;
};

class SqlClient {
 public:
  explicit SqlClient(const localdb::LocalServer& server);  // by the socket, as the benchmark's account
  explicit SqlClient(const TcpLogin& login);

  void Run(const std::string& statement);
  std::string Value(
      const std::string& query);  // the first column of the first row, "NULL" when there is none
  std::string Cipher();           // empty: not encrypted

 private:
  std::unique_ptr<MYSQL, decltype(&mysql_close)> m_connection;
};
