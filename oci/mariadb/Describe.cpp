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

// Upper case, unless the statement itself has the name in quotes. (The server gives a name as it was
// written.)
std::string DescribedName(const MYSQL_FIELD& field, std::string_view text) {
  const std::string name(field.name, field.name_length);
  if (text.find('"' + name + '"') != text.npos) return name;
  return Converted<std::toupper>(name);
}

bool IsTableColumn(const MYSQL_FIELD& field) {
  return field.org_table_length > 0 && field.org_name_length > 0 &&
         std::string_view(field.db, field.db_length) != "information_schema";
}

class Describer {
 public:
  explicit Describer(PreparedStatement& statement) : m_statement(statement) {}

  sql::TypeDescription TypeOf(const MYSQL_FIELD& field) {
    if (!IsTableColumn(field)) return NaturalType(field);
    const ColumnComments& comments = Comments(field);
    const auto comment = comments.find(Converted<std::tolower>({field.org_name, field.org_name_length}));
    const auto declared = comment == comments.end() ? std::nullopt : sql::FromColumnComment(comment->second);
    return declared ? sql::Describe(*declared) : NaturalType(field);
  }

 private:
  const ColumnComments& Comments(const MYSQL_FIELD& field) {
    const std::string table = std::string(field.db) + '.' + field.org_table;
    const auto known = m_comments.find(table);
    if (known != m_comments.end()) return known->second;
    return m_comments.emplace(table, CommentsOf(m_statement, field)).first->second;
  }

  PreparedStatement& m_statement;
  std::map<std::string, ColumnComments> m_comments;  // by table
};

}  // namespace

std::shared_ptr<const Description> Describe(PreparedStatement& statement, std::string_view text) {
  auto description = std::make_shared<Description>();
  Describer describer(statement);
  for (unsigned i = 0; i < statement.FieldCount(); ++i) {
    const MYSQL_FIELD& field = statement.Fields()[i];
    const ub1 nullable = (field.flags & NOT_NULL_FLAG) == 0;
    description->push_back({DescribedName(field, text), describer.TypeOf(field), nullable});
  }
  return description;
}

}  // namespace ocimaria
