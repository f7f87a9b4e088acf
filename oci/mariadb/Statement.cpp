// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Statement.h"

#include <algorithm>
#include <cctype>

#include "oci/mariadb/TraceEvents.h"

namespace ocimaria {
namespace {

std::string PlaceholderName(std::string_view name) {
  if (name.starts_with(':')) name.remove_prefix(1);
  std::string upper(name);
  std::ranges::transform(upper, upper.begin(), [](unsigned char c) { return std::toupper(c); });
  return upper;
}

// The server takes a block's NO_DATA_FOUND that nobody handles for a warning and goes on; Oracle ends the
// block.
std::string RaisingNoData(const std::string& block) {
  return "BEGIN " + block +
         "\nEXCEPTION WHEN NO_DATA_FOUND THEN SIGNAL SQLSTATE '45000' SET MYSQL_ERRNO = 1329, MESSAGE_TEXT = "
         "'no data "
         "found'; END;";
}

}  // namespace

StatementHandle::~StatementHandle() { Release(); }

void StatementHandle::Release() {
  for (const auto& bind : m_binds)
    if (bind) Unregister(bind->Token(), BindHandle::kType);
  for (const auto& define : m_defines)
    if (define) Unregister(define->Token(), DefineHandle::kType);
  m_binds.clear();
  m_masks.clear();
  m_defines.clear();
  description.reset();
  executed = false;
  row_count = 0;
  rows_fetched = dml_errors = 0;
  parse_error_offset = 0;
  ClosePrepared();
}

void StatementHandle::ClosePrepared() {
  rows.reset();
  if (!m_prepared) return;
  CallScope scope(*m_connection);  // closing writes to the connection
  m_prepared.reset();
}

void StatementHandle::Prepare(std::string_view text) {
  Release();
  m_is_prepared = false;
  m_text = text;
  trace::SqlGiven(Token(), text);
  m_sql = {};
  m_sql.type = sql::StatementType(text);
  m_sql = sql::Rewrite(text);
  if (m_sql.is_block) m_sql.text = RaisingNoData(m_sql.text);
  m_binds.resize(m_sql.placeholders.size());
  m_masks.resize(m_sql.placeholders.size());
  m_is_prepared = true;
}

void StatementHandle::RequirePrepared() const {
  if (!m_is_prepared) throw OraError(24337);
}

std::vector<std::size_t> StatementHandle::PlacesNamed(std::string_view name) const {
  RequirePrepared();
  const std::string wanted = PlaceholderName(name);
  std::vector<std::size_t> places;
  for (std::size_t i = 0; i < m_sql.placeholders.size(); ++i)
    if (m_sql.placeholders[i].name == wanted) places.push_back(i);
  if (places.empty()) throw OraError(1036);
  return places;
}

std::vector<std::size_t> StatementHandle::PlacesAt(ub4 position) const {
  RequirePrepared();
  if (position == 0 || position > m_sql.placeholders.size()) throw OraError(1036);
  if (!m_sql.is_block) return {position - 1};
  std::vector<std::string_view> names;
  for (const auto& placeholder : m_sql.placeholders)
    if (std::ranges::find(names, placeholder.name) == names.end()) names.push_back(placeholder.name);
  if (position > names.size()) throw OraError(1036);
  return PlacesNamed(names[position - 1]);
}

void StatementHandle::SetBind(const std::vector<std::size_t>& places,
                              const std::shared_ptr<BindHandle>& bind) {
  Register(bind, Token());
  for (const std::size_t place : places) {
    const auto old = std::exchange(m_binds[place], bind);
    if (old && std::ranges::find(m_binds, old) == m_binds.end()) Unregister(old->Token(), BindHandle::kType);
  }
}

std::vector<ParameterColumn> StatementHandle::ParameterColumns() {
  std::vector<ParameterColumn> columns;
  for (std::size_t i = 0; i < m_binds.size(); ++i) {
    if (!m_binds[i]) throw OraError(1008);
    const std::string& mask = m_sql.placeholders[i].date_mask;
    if (!mask.empty() && !m_masks[i]) m_masks[i] = std::make_shared<sql::DateMask>(mask);
    columns.emplace_back(m_binds[i], m_masks[i]);
  }
  return columns;
}

void StatementHandle::SetDefine(ub4 position, const std::shared_ptr<DefineHandle>& define) {
  RequirePrepared();
  Register(define, Token());
  if (m_defines.size() < position) m_defines.resize(position);
  const auto old = std::exchange(m_defines[position - 1], define);
  if (old) Unregister(old->Token(), DefineHandle::kType);
}

void StatementHandle::UseConnection(const std::shared_ptr<Connection>& connection) {
  if (m_connection == connection) return;
  ClosePrepared();
  m_connection = connection;
}

sql::ErrorContext StatementHandle::FailureContext() const {
  sql::ErrorContext context;
  context.statement_type = m_sql.type;
  context.is_ddl = m_sql.is_ddl;
  context.is_block = m_sql.is_block;
  context.no_wait = m_sql.no_wait;
  context.table = m_sql.target_table;
  context.schema = m_connection->Target().schema;
  return context;
}

PreparedStatement& StatementHandle::Prepared() {
  if (!m_prepared) m_prepared = std::make_unique<PreparedStatement>(m_connection, m_sql.text, BindCount());
  return *m_prepared;
}

}  // namespace ocimaria
