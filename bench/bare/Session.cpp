// SPDX-License-Identifier: Apache-2.0
#include "bench/bare/Session.h"

#include <cstdlib>
#include <iostream>

namespace bare {
namespace {

[[noreturn]] void Fail(const std::string& what, const char* why) {
  std::cerr << what << ": " << why << "\n";
  std::_Exit(1);
}

}  // namespace

Session::Session(const std::string& socket, const std::string& user, const std::string& schema)
    : m_mysql(mysql_init(nullptr)) {
  const unsigned local_files = 1;
  mysql_options(m_mysql, MYSQL_OPT_LOCAL_INFILE, &local_files);
  mysql_options(m_mysql, MYSQL_SET_CHARSET_NAME, "utf8mb4");
  if (!mysql_real_connect(m_mysql, nullptr, user.c_str(), nullptr, schema.c_str(), 0, socket.c_str(), 0))
    Fail("cannot connect to " + socket, mysql_error(m_mysql));
  Run("SET autocommit=0, tx_isolation='READ-COMMITTED'");
}

size_t Session::Run(const std::string& text) {
  if (mysql_real_query(m_mysql, text.data(), text.size()) != 0) Fail(text, mysql_error(m_mysql));
  return mysql_affected_rows(m_mysql);
}

std::vector<enum_field_types> Session::ColumnTypes(const std::string& table) {
  const std::string text = "SELECT * FROM " + table + " LIMIT 0";
  if (mysql_real_query(m_mysql, text.data(), text.size()) != 0) Fail(text, mysql_error(m_mysql));
  MYSQL_RES* result = mysql_store_result(m_mysql);
  std::vector<enum_field_types> types;
  for (unsigned i = 0; i < mysql_num_fields(result); ++i)
    types.push_back(mysql_fetch_field_direct(result, i)->type);
  mysql_free_result(result);
  Run("COMMIT");
  return types;
}

Statement::Statement(Session& session, const std::string& text)
    : m_statement(mysql_stmt_init(session.Native())) {
  if (mysql_stmt_prepare(m_statement, text.data(), text.size()) != 0)
    Fail(text, mysql_stmt_error(m_statement));
}

void Statement::ExecuteArray(MYSQL_BIND* binds, unsigned count) const {
  mysql_stmt_attr_set(m_statement, STMT_ATTR_ARRAY_SIZE, &count);
  if (mysql_stmt_bind_param(m_statement, binds) != 0 || mysql_stmt_execute(m_statement) != 0)
    Fail("bulk insert", mysql_stmt_error(m_statement));
}

}  // namespace bare
