// SPDX-License-Identifier: Apache-2.0
// A session with a private server that runs Oracle's SQL by the rewriter alone: every text is rewritten,
// prepared and executed, and errors come as Oracle's. One thread.
#pragma once

#include <mysql.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "TemporaryFolder.h"
#include "localdb/LocalServer.h"
#include "oci/mariadb/sql/Rewrite.h"

namespace ocimaria::sql {

using Row = std::vector<std::string>;  // NULL as "NULL"

class ServerSession {
 public:
  ServerSession();

  // The rows of a query. Bound values are texts; one inside TO_DATE is converted by its mask.
  std::vector<Row> Run(std::string_view oracle_sql, const std::vector<std::string>& values = {});

  // Without rewriting.
  std::vector<Row> RunAsItIs(std::string_view sql);

  // The first column of the first row.
  std::string Value(std::string_view oracle_sql) { return Run(oracle_sql).at(0).at(0); }

  // The rows that the last DML changed.
  unsigned long long ChangedRows() const { return m_changed; }

  // Drops every table and sequence.
  void Clear();

 private:
  using Statement = std::unique_ptr<MYSQL_STMT, decltype(&mysql_stmt_close)>;
  std::vector<Row> Execute(const Rewritten& sql, const std::vector<std::string>& values);
  std::vector<Row> Fetch(MYSQL_STMT* statement);
  void Bind(MYSQL_STMT* statement, const Rewritten& sql, const std::vector<std::string>& values);
  void Check(MYSQL_STMT* statement, bool failed, const Rewritten& sql) const;

  test_support::TemporaryFolder m_folder;
  localdb::LocalServer m_server;
  std::unique_ptr<MYSQL, decltype(&mysql_close)> m_connection;
  std::string m_schema;
  unsigned long long m_changed = 0;
};

}  // namespace ocimaria::sql
