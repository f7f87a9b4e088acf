// SPDX-License-Identifier: Apache-2.0
// A statement that the server has prepared, on one connection, for as many executions as wanted. Results are
// stored whole, so the connection is free for the next statement at once. It must not outlive its connection.
// Threads: as the connection that it belongs to. Round trips: stated at each operation; closing needs none.
#pragma once

#include <mysql.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "oci/mariadb/Connection.h"

namespace ocimaria {

class PreparedStatement {
 public:
  PreparedStatement(Connection& connection, std::string text, unsigned parameters);
  ~PreparedStatement();
  PreparedStatement(const PreparedStatement&) = delete;
  PreparedStatement& operator=(const PreparedStatement&) = delete;

  // Prepares without executing. One round trip, none when it is prepared already. Throws ServerFailure.
  void Prepare();

  // Executes; gives the number of rows matched. `array_size` 0 is one execution with plain binds, else one
  // execution per element of array binds. One round trip, the first time too (prepare and execute travel
  // together); 2 for a query whose table has got more or fewer columns since it was prepared. Throws
  // ServerFailure.
  std::uint64_t Execute(MYSQL_BIND* binds, unsigned array_size);

  // Takes the whole result of an execution to the client. REQUIRES an executed query.
  void StoreResult();
  std::uint64_t StoredRows() { return mysql_stmt_num_rows(m_statement); }
  void FreeResult();

  // The next stored row into the result binds. False at the end.
  bool Fetch(MYSQL_BIND* results);

  // REQUIRES a prepared statement. The texts belong to the statement.
  const MYSQL_FIELD* Fields() const { return m_statement->fields; }
  unsigned FieldCount() const { return m_statement->field_count; }

  Connection& Session() { return m_connection; }
  std::string_view Text() const { return m_text; }

  // As good as new for the next handle with this text: it returns no rows and its last execution succeeded.
  bool IsReusable() const { return m_succeeded && FieldCount() == 0; }

 private:
  static MYSQL_STMT* Open(MYSQL* mysql);
  int Send(MYSQL_BIND* binds, unsigned array_size);
  void Reopen();  // as before its first preparation
  [[noreturn]] void Fail();
  void Check(int status) {
    if (status != 0) Fail();
  }

  Connection& m_connection;
  std::string m_text;
  unsigned m_parameters;
  MYSQL_STMT* m_statement;
  bool m_prepared = false;
  bool m_succeeded = false;
};

}  // namespace ocimaria
