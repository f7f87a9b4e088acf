// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Describe.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <string>

#include "oci/mariadb/NaturalType.h"
#include "oci/mariadb/TypeCache.h"

namespace ocimaria {
namespace {

template <int (*Convert)(int)>
std::string Converted(std::string_view text) {
  std::string converted(text);
  std::ranges::transform(converted, converted.begin(), [](unsigned char c) { return Convert(c); });
  return converted;
}

bool IsTableColumn(const MYSQL_FIELD& field) {
  return field.org_table_length > 0 && field.org_name_length > 0 &&
         std::string_view(field.db, field.db_length) != "information_schema";
}

class Describer {
 public:
  Describer(PreparedStatement& statement, std::string_view text) : m_statement(statement), m_text(text) {}

  ColumnDescription Of(const MYSQL_FIELD& field) {
    const std::string_view comment = Comment(field);
    const auto declared = sql::FromColumnComment(comment);
    const ub1 nullable = (field.flags & NOT_NULL_FLAG) == 0;
    return {NameOf(field, comment), declared ? sql::Describe(*declared) : NaturalType(field), nullable};
  }

 private:
  // Upper case, unless the statement itself has the name in quotes or the column was declared so. (The server
  // gives a name as it was written, and for a * as it was declared.)
  std::string NameOf(const MYSQL_FIELD& field, std::string_view comment) const {
    const std::string name(field.name, field.name_length);
    const bool is_quoted = m_text.find('"' + name + '"') != m_text.npos;
    const bool is_declared = name == field.org_name && name == sql::NameInColumnComment(comment);
    return is_quoted || is_declared ? name : Converted<std::toupper>(name);
  }

  // Empty for an expression, and for a column of a table that was not made here.
  std::string_view Comment(const MYSQL_FIELD& field) {
    if (!IsTableColumn(field)) return {};
    const ColumnComments& comments = Comments(field);
    const auto comment = comments.find(Converted<std::tolower>({field.org_name, field.org_name_length}));
    return comment == comments.end() ? std::string_view() : comment->second;
  }

  const ColumnComments& Comments(const MYSQL_FIELD& field) {
    const std::string table = std::string(field.db) + '.' + field.org_table;
    const auto known = m_comments.find(table);
    if (known != m_comments.end()) return known->second;
    return m_comments.emplace(table, CommentsOf(m_statement, field)).first->second;
  }

  PreparedStatement& m_statement;
  const std::string_view m_text;
  std::map<std::string, ColumnComments> m_comments;  // by table
};

}  // namespace

std::shared_ptr<const Description> Describe(PreparedStatement& statement, std::string_view text) {
  auto description = std::make_shared<Description>();
  Describer describer(statement, text);
  for (unsigned i = 0; i < statement.FieldCount(); ++i)
    description->push_back(describer.Of(statement.Fields()[i]));
  return description;
}

}  // namespace ocimaria
