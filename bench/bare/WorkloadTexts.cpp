// SPDX-License-Identifier: Apache-2.0
#include "bench/bare/WorkloadTexts.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace bare {
namespace {

constexpr size_t kRows = 2000;

Kind KindOf(const MYSQL_FIELD& field) {
  switch (field.type) {
    case MYSQL_TYPE_DOUBLE:
    case MYSQL_TYPE_NEWDECIMAL:
    case MYSQL_TYPE_LONGLONG:
    case MYSQL_TYPE_LONG:
      return Kind::kNumber;
    case MYSQL_TYPE_DATETIME:
      return Kind::kDate;
    default:
      return Kind::kText;
  }
}

std::string Upper(std::string text) {
  std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::toupper(c); });
  return text;
}

// Dates as the plug-in's generator writes them: without a fraction.
Value ValueOf(Kind kind, const char* text, size_t length) {
  if (!text) return {true, "", 0};
  constexpr size_t kDateLength = 19;
  const size_t kept = kind == Kind::kDate ? std::min(length, kDateLength) : length;
  return {false, std::string(text, kept), kind == Kind::kNumber ? std::strtod(text, nullptr) : 0};
}

template <class Text>
std::string Joined(const std::vector<Column>& columns, Text&& text_of) {
  std::string joined;
  for (const Column& column : columns) (joined += joined.empty() ? "" : ", ") += text_of(column);
  return joined;
}

}  // namespace

WorkloadTexts::WorkloadTexts(Session& session, const std::string& table) : m_table(table) {
  ReadRows(session);
  for (size_t id = 1; id <= m_rows.size(); ++id) {
    m_oracle_updates.push_back(Update(id, "TO_DATE('", "', 'YYYY-MM-DD HH24:MI:SS')"));
    m_server_updates.push_back(Update(id, "TIMESTAMP'", "'"));
  }
}

void WorkloadTexts::ReadRows(Session& session) {
  session.Run("SELECT * FROM " + m_table + " ORDER BY ID LIMIT " + std::to_string(kRows));
  MYSQL_RES* result = mysql_store_result(session.Native());
  for (unsigned i = 0; i < mysql_num_fields(result); ++i) {
    const MYSQL_FIELD& field = *mysql_fetch_field_direct(result, i);
    m_columns.push_back({Upper(field.name), KindOf(field)});
  }
  while (MYSQL_ROW row = mysql_fetch_row(result)) {
    const unsigned long* lengths = mysql_fetch_lengths(result);
    auto& values = m_rows.emplace_back();
    for (size_t i = 0; i < m_columns.size(); ++i)
      values.push_back(ValueOf(m_columns[i].kind, row[i], lengths[i]));
  }
  mysql_free_result(result);
  session.Run("COMMIT");
}

std::string WorkloadTexts::OracleInsert() const {
  return "INSERT INTO " + m_table + " (" + Joined(m_columns, [](const Column& c) { return c.name; }) +
         ") VALUES (" +
         Joined(m_columns,
                [](const Column& column) {
                  const std::string placeholder = ":" + column.name;
                  if (column.kind != Kind::kDate) return placeholder;
                  return "TO_DATE(" + placeholder + ", 'YYYY/MM/DD HH24:MI:SS')";
                }) +
         ")";
}

std::string WorkloadTexts::ServerInsert() const {
  return "INSERT INTO " + m_table + " (" + Joined(m_columns, [](const Column& c) { return c.name; }) +
         ") VALUES (" + Joined(m_columns, [](const Column&) { return std::string("?"); }) + ")";
}

// As the plug-in writes it, a NULL as an empty text or the number 0.
std::string WorkloadTexts::Update(size_t id, const char* before_date, const char* behind_date) const {
  const std::string number = std::to_string(id);
  const auto& values = Row(id + 1);
  std::string text = "update " + m_table + " set ID=" + number;
  for (size_t i = 1; i < m_columns.size(); ++i) {
    text += "," + m_columns[i].name + "=";
    if (m_columns[i].kind == Kind::kNumber)
      text += std::to_string(values[i].number);
    else if (m_columns[i].kind == Kind::kText)
      text += "'" + values[i].text + "'";
    else
      text += values[i].is_null ? "NULL" : before_date + values[i].text + behind_date;
  }
  return text + " where id = " + number;
}

}  // namespace bare
