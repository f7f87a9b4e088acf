// SPDX-License-Identifier: Apache-2.0
#include "SqlClient.h"

#include <stdexcept>

namespace {

void Check(MYSQL* connection, bool good) {
  if (!good) throw std::runtime_error(mysql_error(connection));
}

void SetText(MYSQL* connection, mysql_option option, const std::string& text) {
  if (!text.empty()) mysql_optionsv(connection, option, text.c_str());
}

}  // namespace

SqlClient::SqlClient(const localdb::LocalServer& server) : m_connection(mysql_init(nullptr), &mysql_close) {
  Check(m_connection.get(),
        mysql_real_connect(m_connection.get(), nullptr, server.User().c_str(), server.Password().c_str(),
                           "lkbench", 0, server.SocketPath().c_str(), 0) != nullptr);
}

SqlClient::SqlClient(const TcpLogin& login) : m_connection(mysql_init(nullptr), &mysql_close) {
  SetText(m_connection.get(), MYSQL_OPT_SSL_CA, login.authority);
  SetText(m_connection.get(), MYSQL_OPT_SSL_CERT, login.certificate);
  SetText(m_connection.get(), MYSQL_OPT_SSL_KEY, login.key);
  const my_bool verify = login.authority.empty() ? 0 : 1;
  mysql_optionsv(m_connection.get(), MYSQL_OPT_SSL_VERIFY_SERVER_CERT, &verify);
  Check(m_connection.get(),
        mysql_real_connect(m_connection.get(), login.host.c_str(), login.user.c_str(), login.password.c_str(),
                           "lkbench", static_cast<unsigned>(login.port), nullptr, 0) != nullptr);
}

void SqlClient::Run(const std::string& statement) {
  Check(m_connection.get(), mysql_query(m_connection.get(), statement.c_str()) == 0);
}

std::string SqlClient::Value(const std::string& query) {
  Run(query);
  const std::unique_ptr<MYSQL_RES, decltype(&mysql_free_result)> result(
      mysql_store_result(m_connection.get()), &mysql_free_result);
  Check(m_connection.get(), result != nullptr);
  const MYSQL_ROW row = mysql_fetch_row(result.get());
  return row != nullptr && row[0] != nullptr ? row[0] : "NULL";
}

std::string SqlClient::Cipher() {
  const char* cipher = mysql_get_ssl_cipher(m_connection.get());
  return cipher != nullptr ? cipher : "";
}
