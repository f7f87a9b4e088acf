// SPDX-License-Identifier: Apache-2.0
// A session and a prepared statement of the database's own client library, with nothing around them. A
// failure is told on standard error and ends the process. One thread.
#pragma once

#include <mysql.h>

#include <string>
#include <vector>

namespace bare {

class Session {
 public:
  Session(const std::string& socket, const std::string& user, const std::string& schema);
  ~Session() { mysql_close(m_mysql); }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  size_t Run(const std::string& text);  // gives the rows that it affected
  std::vector<enum_field_types> ColumnTypes(const std::string& table);
  MYSQL* Native() { return m_mysql; }

 private:
  MYSQL* m_mysql;
};

class Statement {
 public:
  Statement(Session& session, const std::string& text);
  ~Statement() { mysql_stmt_close(m_statement); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  // Column-wise binds for `count` rows.
  void ExecuteArray(MYSQL_BIND* binds, unsigned count) const;

 private:
  MYSQL_STMT* m_statement;
};

}  // namespace bare
