// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Statement.h"

#include <algorithm>
#include <cctype>
#include <optional>

#include "oci/mariadb/KeptStatements.h"
#include "oci/mariadb/TraceEvents.h"

namespace ocimaria {
namespace {

std::string PlaceholderName(std::string_view name) {
  if (name.starts_with(':')) name.remove_prefix(1);
  std::string upper(name);
  std::ranges::transform(upper, upper.begin(), [](unsigned char c) { return std::toupper(c); });
  return upper;
}

}  // namespace

const std::shared_ptr<const ParsedText>& StatementHandle::NoText() {
  static const auto& none = *new auto(std::make_shared<const ParsedText>());  // outlives every handle
  return none;
}

void StatementHandle::Release() {
  for (const auto& bind : m_binds)
    if (bind) Unregister(bind->Token(), BindHandle::kType);
  for (const auto& define : m_defines)
    if (define) Unregister(define->Token(), DefineHandle::kType);
  m_binds.clear();
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
  m_connection->Kept().Give(std::move(m_prepared));
}

void StatementHandle::Prepare(std::string_view text) {
  Release();
  m_is_prepared = false;
  m_text = text;
  trace::SqlGiven(Token(), text);
  m_parsed = NoText();
  try {
    m_parsed = Parse(text);
  } catch (...) {
    m_type = sql::StatementType(text);
    throw;
  }
  m_type = Sql().type;
  m_binds.resize(Sql().placeholders.size());
  m_is_prepared = true;
}

void StatementHandle::RequirePrepared() const {
  if (!m_is_prepared) throw OraError(24337);
}

Places StatementHandle::PlacesNamed(std::string_view name) const {
  RequirePrepared();
  const std::string wanted = PlaceholderName(name);
  std::optional<Places> places;
  for (std::size_t i = 0; i < Sql().placeholders.size(); ++i) {
    if (Sql().placeholders[i].name != wanted) continue;
    if (places)
      places->others.push_back(i);
    else
      places = {i, {}};
  }
  if (!places) throw OraError(1036);
  return *std::move(places);
}

Places StatementHandle::PlacesAt(ub4 position) const {
  RequirePrepared();
  if (position == 0 || position > Sql().placeholders.size()) throw OraError(1036);
  if (!Sql().is_block) return {position - 1, {}};
  std::vector<std::string_view> names;
  for (const auto& placeholder : Sql().placeholders)
    if (std::ranges::find(names, placeholder.name) == names.end()) names.push_back(placeholder.name);
  if (position > names.size()) throw OraError(1036);
  return PlacesNamed(names[position - 1]);
}

void StatementHandle::SetBind(const Places& places, const std::shared_ptr<BindHandle>& bind) {
  Register(bind, Token());
  Replace(places.first, bind);
  for (const std::size_t place : places.others) Replace(place, bind);
}

void StatementHandle::Replace(std::size_t place, const std::shared_ptr<BindHandle>& bind) {
  const auto old = std::exchange(m_binds[place], bind);
  if (old && std::ranges::find(m_binds, old) == m_binds.end()) Unregister(old->Token(), BindHandle::kType);
}

std::vector<ParameterColumn> StatementHandle::ParameterColumns() {
  std::vector<ParameterColumn> columns;
  columns.reserve(m_binds.size());
  for (std::size_t i = 0; i < m_binds.size(); ++i) {
    if (!m_binds[i]) throw OraError(1008);
    columns.emplace_back(*m_binds[i], m_parsed->masks[i].get());
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
  context.statement_type = Sql().type;
  context.is_ddl = Sql().is_ddl;
  context.is_block = Sql().is_block;
  context.no_wait = Sql().no_wait;
  context.table = Sql().target_table;
  context.schema = m_connection->Target().schema;
  return context;
}

PreparedStatement& StatementHandle::Prepared() {
  if (!m_prepared) m_prepared = m_connection->Kept().Take(Sql().text);
  if (!m_prepared) m_prepared = std::make_unique<PreparedStatement>(*m_connection, Sql().text, BindCount());
  return *m_prepared;
}

}  // namespace ocimaria
