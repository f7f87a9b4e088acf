// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/PreparedStatement.h"

#include <errmsg.h>

#include <new>

#include "oci/mariadb/TraceEvents.h"

namespace ocimaria {
PreparedStatement::PreparedStatement(Connection& connection, std::string text, unsigned parameters)
    : m_connection(connection),
      m_text(std::move(text)),
      m_parameters(parameters),
      m_statement(Open(m_connection.Native())) {}

PreparedStatement::~PreparedStatement() { m_connection.CloseStatement(m_statement); }

MYSQL_STMT* PreparedStatement::Open(MYSQL* mysql) {
  MYSQL_STMT* statement = mysql_stmt_init(mysql);
  if (!statement) throw std::bad_alloc();
  const my_bool measure = 1;  // the widest value of each column, so that fetch buffers fit
  mysql_stmt_attr_set(statement, STMT_ATTR_UPDATE_MAX_LENGTH, &measure);
  return statement;
}

void PreparedStatement::Prepare() {
  if (m_prepared) return;
  m_connection.Native();
  m_connection.RequireRoomFor(m_text.size());
  const trace::RoundTrip trip(m_connection.Id(), "prepare", m_text);
  Check(mysql_stmt_prepare(m_statement, m_text.data(), m_text.size()));
  m_prepared = true;
}

std::uint64_t PreparedStatement::Execute(MYSQL_BIND* binds, unsigned array_size) {
  m_connection.Native();
  m_succeeded = false;
  int status = Send(binds, array_size);
  // The client library takes no result with more or fewer columns than were prepared.
  if (status != 0 && mysql_stmt_errno(m_statement) == CR_NEW_STMT_METADATA) {
    Reopen();
    status = Send(binds, array_size);
  }
  Check(status);
  m_prepared = m_succeeded = true;
  return FieldCount() == 0 ? mysql_stmt_affected_rows(m_statement) : 0;
}

int PreparedStatement::Send(MYSQL_BIND* binds, unsigned array_size) {
  if (!m_prepared) mysql_stmt_attr_set(m_statement, STMT_ATTR_PREBIND_PARAMS, &m_parameters);
  mysql_stmt_attr_set(m_statement, STMT_ATTR_ARRAY_SIZE, &array_size);
  if (m_parameters > 0) Check(mysql_stmt_bind_param(m_statement, binds));
  if (m_prepared) {
    const trace::RoundTrip trip(m_connection.Id(), "execute");
    return mysql_stmt_execute(m_statement);
  }
  m_connection.RequireRoomFor(m_text.size());
  const trace::RoundTrip trip(m_connection.Id(), "prepare and execute", m_text);
  return mariadb_stmt_execute_direct(m_statement, m_text.data(), m_text.size());
}

void PreparedStatement::Reopen() {
  m_connection.CloseStatement(m_statement);  // reads what the failed execution left unread
  m_prepared = false;
  m_statement = nullptr;
  m_statement = Open(m_connection.Native());
}

void PreparedStatement::StoreResult() { Check(mysql_stmt_store_result(m_statement)); }

void PreparedStatement::FreeResult() { mysql_stmt_free_result(m_statement); }

bool PreparedStatement::Fetch(MYSQL_BIND* results) {
  if (results) Check(mysql_stmt_bind_result(m_statement, results));
  const int status = mysql_stmt_fetch(m_statement);
  if (status == 1) Fail();
  return status != MYSQL_NO_DATA;
}

void PreparedStatement::Fail() {
  m_connection.Throw(mysql_stmt_errno(m_statement), mysql_stmt_error(m_statement));
}

}  // namespace ocimaria
