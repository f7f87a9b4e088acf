// SPDX-License-Identifier: Apache-2.0
#include "ServerSession.h"

#include <stdexcept>

#include "oci/mariadb/sql/DateMask.h"
#include "oci/mariadb/sql/ErrorMap.h"
#include "oci/mariadb/sql/SessionSettings.h"

namespace ocimaria::sql {

ServerSession::ServerSession()
    : m_server(m_folder.Path() / "db"), m_connection(mysql_init(nullptr), &mysql_close) {
  // mariadb:///SCHEMA?socket=…
  const std::string target = m_server.ConnectString();
  const auto begin = target.find(":///") + 4;
  m_schema = target.substr(begin, target.find('?') - begin);
  if (!mysql_real_connect(m_connection.get(), nullptr, m_server.User().c_str(), m_server.Password().c_str(),
                          m_schema.c_str(), 0, m_server.SocketPath().c_str(), CLIENT_FOUND_ROWS)) {
    throw std::runtime_error(mysql_error(m_connection.get()));
  }
  RunAsItIs(std::string("SET ") + kSessionSettings);
}

std::vector<Row> ServerSession::Run(std::string_view oracle_sql, const std::vector<std::string>& values) {
  return Execute(Rewrite(oracle_sql), values);
}

std::vector<Row> ServerSession::RunAsItIs(std::string_view sql) {
  Rewritten as_it_is;
  as_it_is.text = sql;
  return Execute(as_it_is, {});
}

std::vector<Row> ServerSession::Execute(const Rewritten& sql, const std::vector<std::string>& values) {
  const Statement statement(mysql_stmt_init(m_connection.get()), &mysql_stmt_close);
  Check(statement.get(), mysql_stmt_prepare(statement.get(), sql.text.data(), sql.text.size()) != 0, sql);
  Bind(statement.get(), sql, values);
  m_changed = mysql_stmt_affected_rows(statement.get());
  return mysql_stmt_field_count(statement.get()) == 0 ? std::vector<Row>() : Fetch(statement.get());
}

void ServerSession::Bind(MYSQL_STMT* statement, const Rewritten& sql,
                         const std::vector<std::string>& values) {
  if (values.size() != sql.placeholders.size()) throw OraError(1008);
  std::vector<std::string> texts = values;
  std::vector<MYSQL_BIND> binds(texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const std::string& mask = sql.placeholders[i].date_mask;
    if (!mask.empty()) texts[i] = DateMask(mask).ToCanonical(texts[i]);
    binds[i].buffer_type = MYSQL_TYPE_STRING;
    binds[i].buffer = texts[i].data();
    binds[i].buffer_length = texts[i].size();
  }
  Check(statement, !binds.empty() && mysql_stmt_bind_param(statement, binds.data()) != 0, sql);
  Check(statement, mysql_stmt_execute(statement) != 0, sql);
}

std::vector<Row> ServerSession::Fetch(MYSQL_STMT* statement) {
  constexpr std::size_t kLongestValue = 8192;
  const unsigned columns = mysql_stmt_field_count(statement);
  std::vector<std::string> buffers(columns, std::string(kLongestValue, '\0'));
  std::vector<unsigned long> lengths(columns);
  auto nulls = std::make_unique<my_bool[]>(columns);
  std::vector<MYSQL_BIND> binds(columns);
  for (unsigned i = 0; i < columns; ++i) {
    binds[i].buffer_type = MYSQL_TYPE_STRING;
    binds[i].buffer = buffers[i].data();
    binds[i].buffer_length = kLongestValue;
    binds[i].length = &lengths[i];
    binds[i].is_null = &nulls[i];
  }
  mysql_stmt_bind_result(statement, binds.data());
  std::vector<Row> rows;
  for (int status = mysql_stmt_fetch(statement); status != MYSQL_NO_DATA;
       status = mysql_stmt_fetch(statement)) {
    Check(statement, status != 0, {});
    Row& row = rows.emplace_back();
    for (unsigned i = 0; i < columns; ++i)
      row.push_back(nulls[i] ? "NULL" : buffers[i].substr(0, lengths[i]));
  }
  return rows;
}

void ServerSession::Check(MYSQL_STMT* statement, bool failed, const Rewritten& sql) const {
  if (!failed) return;
  const ErrorContext context{.statement_type = sql.type,
                             .is_ddl = sql.is_ddl,
                             .is_block = sql.is_block,
                             .no_wait = sql.no_wait,
                             .schema = m_schema,
                             .table = sql.target_table};
  throw MapServerError(mysql_stmt_errno(statement), mysql_stmt_error(statement), context);
}

void ServerSession::Clear() {
  for (const Row& row : Run("SELECT TABLE_NAME FROM USER_TABLES")) RunAsItIs("DROP TABLE \"" + row[0] + "\"");
  for (const Row& row : Run("SELECT SEQUENCE_NAME FROM USER_SEQUENCES")) RunAsItIs("DROP SEQUENCE " + row[0]);
}

}  // namespace ocimaria::sql
