// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/DictionaryQueries.h"

#include <array>

namespace ocimaria::sql {
namespace {

// USER_… covers the schema of the session, ALL_… every schema that is not the server's own and names the
// owner.
struct Scope {
  bool is_all;

  std::string Where(const std::string& schema) const {
    if (!is_all) return " WHERE " + schema + " = DATABASE()";
    return " WHERE " + schema + " NOT IN ('information_schema', 'mysql', 'performance_schema', 'sys')";
  }
};

// The server compares its names without regard to case; the views give Oracle's form, compared byte by byte.
std::string Name(const std::string& column, const std::string& alias) {
  return "CAST(UPPER(" + column + ") AS CHAR(64)) " + alias;
}

std::string OwnerIfAll(const Scope& scope, const std::string& schema, const std::string& alias = "OWNER") {
  return scope.is_all ? Name(schema, alias) + ", " : "";
}

// The name of a constraint or an index, made unique in its schema.
std::string KeyName(const std::string& column, const std::string& table, const std::string& alias) {
  return Name(
      "CASE WHEN " + column + " = 'PRIMARY' THEN CONCAT('PK_', " + table + ") ELSE " + column + " END",
      alias);
}

std::string Tables(const Scope& scope) {
  return "SELECT " + OwnerIfAll(scope, "t.table_schema") + Name("t.table_name", "TABLE_NAME") +
         ", 'VALID' STATUS, t.table_rows NUM_ROWS FROM information_schema.tables t" +
         scope.Where("t.table_schema") + " AND t.table_type = 'BASE TABLE'";
}

std::string Sequences(const Scope& scope) {
  return "SELECT " + OwnerIfAll(scope, "t.table_schema", "SEQUENCE_OWNER") +
         Name("t.table_name", "SEQUENCE_NAME") + " FROM information_schema.tables t" +
         scope.Where("t.table_schema") + " AND t.table_type = 'SEQUENCE'";
}

std::string Views(const Scope& scope) {
  return "SELECT " + OwnerIfAll(scope, "v.table_schema") + Name("v.table_name", "VIEW_NAME") +
         ", v.view_definition TEXT FROM information_schema.views v" + scope.Where("v.table_schema");
}

std::string Objects(const Scope& scope) {
  return "SELECT " + OwnerIfAll(scope, "t.table_schema") + Name("t.table_name", "OBJECT_NAME") +
         ", CAST(CASE t.table_type WHEN 'BASE TABLE' THEN 'TABLE' ELSE t.table_type END AS CHAR(23)) "
         "OBJECT_TYPE,"
         " t.create_time CREATED, 'VALID' STATUS FROM information_schema.tables t" +
         scope.Where("t.table_schema");
}

std::string Constraints(const Scope& scope) {
  return "SELECT " + Name("k.constraint_schema", "OWNER") + ", " +
         KeyName("k.constraint_name", "k.table_name", "CONSTRAINT_NAME") +
         ", CASE k.constraint_type WHEN 'PRIMARY KEY' THEN 'P' WHEN 'UNIQUE' THEN 'U' WHEN 'FOREIGN KEY' "
         "THEN 'R'"
         " ELSE 'C' END CONSTRAINT_TYPE, " +
         Name("k.table_name", "TABLE_NAME") +
         ", 'ENABLED' STATUS FROM information_schema.table_constraints k" +
         scope.Where("k.constraint_schema") + " AND k.constraint_name NOT LIKE 'ora$len$%'";
}

std::string ConsColumns(const Scope& scope) {
  return "SELECT " + Name("k.constraint_schema", "OWNER") + ", " +
         KeyName("k.constraint_name", "k.table_name", "CONSTRAINT_NAME") + ", " +
         Name("k.table_name", "TABLE_NAME") + ", " + Name("k.column_name", "COLUMN_NAME") +
         ", k.ordinal_position POSITION FROM information_schema.key_column_usage k" +
         scope.Where("k.constraint_schema");
}

std::string Indexes(const Scope& scope) {
  return "SELECT " + OwnerIfAll(scope, "i.index_schema") +
         KeyName("i.index_name", "i.table_name", "INDEX_NAME") + ", 'NORMAL' INDEX_TYPE, " +
         Name("i.table_schema", "TABLE_OWNER") + ", " + Name("i.table_name", "TABLE_NAME") +
         ", CASE i.non_unique WHEN 0 THEN 'UNIQUE' ELSE 'NONUNIQUE' END UNIQUENESS, 'VALID' STATUS"
         " FROM information_schema.statistics i" +
         scope.Where("i.table_schema") + " AND i.seq_in_index = 1";
}

std::string IndColumns(const Scope& scope) {
  return "SELECT " + OwnerIfAll(scope, "i.index_schema", "INDEX_OWNER") +
         KeyName("i.index_name", "i.table_name", "INDEX_NAME") + ", " + Name("i.table_name", "TABLE_NAME") +
         ", " + Name("i.column_name", "COLUMN_NAME") +
         ", i.seq_in_index COLUMN_POSITION, 'ASC' DESCEND FROM information_schema.statistics i" +
         scope.Where("i.table_schema");
}

// A column declared in quotes is named in its comment.
constexpr char kColumnName[] =
    "CAST(CASE WHEN c.column_comment LIKE CONCAT('ora:% \"', c.column_name, '\"') THEN c.column_name"
    " ELSE UPPER(c.column_name) END AS CHAR(64)) COLUMN_NAME";

// t: the declared type of a column, which is its comment, or else what its storage comes closest to.
constexpr char kDeclaredType[] =
    "CASE WHEN c.column_comment LIKE 'ora:%' THEN SUBSTRING_INDEX(SUBSTR(c.column_comment, 5), ' \"', 1)"
    " WHEN c.data_type = 'decimal' THEN CONCAT('NUMBER(', c.numeric_precision, ',', c.numeric_scale, ')')"
    " WHEN c.data_type = 'double' THEN 'NUMBER' WHEN c.data_type = 'float' THEN 'BINARY_FLOAT'"
    " WHEN c.data_type LIKE '%int' THEN CONCAT('NUMBER(', c.numeric_precision, ')')"
    " WHEN c.data_type = 'date' OR c.datetime_precision = 0 THEN 'DATE'"
    " WHEN c.datetime_precision > 0 THEN CONCAT('TIMESTAMP(', c.datetime_precision, ')')"
    " WHEN c.data_type LIKE '%binary' THEN CONCAT('RAW(', c.character_maximum_length, ')')"
    " WHEN c.data_type LIKE '%blob' THEN 'BLOB' WHEN c.data_type LIKE '%text' THEN 'CLOB'"
    " WHEN c.data_type = 'char' THEN CONCAT('CHAR(', c.character_maximum_length, ')')"
    " ELSE CONCAT('VARCHAR2(', NVL(c.character_maximum_length, 4000), ')') END t";

// a: what stands in the first parentheses of t; z: in the last.
constexpr char kTypeArguments[] =
    "SUBSTRING_INDEX(SUBSTRING_INDEX(SUBSTRING_INDEX(t, '(', 2), '(', -1), ')', 1) a,"
    " SUBSTRING_INDEX(SUBSTRING_INDEX(t, '(', -1), ')', 1) z";

constexpr char kTypeColumns[] =
    "CAST(CASE WHEN t LIKE 'TIMESTAMP%' OR t LIKE 'INTERVAL%' THEN t ELSE SUBSTRING_INDEX(t, '(', 1) END"
    " AS CHAR(64)) DATA_TYPE,"
    " CAST(CASE WHEN t LIKE 'NUMBER%' OR t LIKE 'FLOAT%' THEN 22"
    " WHEN t LIKE '% CHAR)' OR t LIKE 'N%CHAR%' THEN 4 * SUBSTRING_INDEX(a, ' ', 1)"
    " WHEN t LIKE '%CHAR%' OR t LIKE 'RAW%' THEN a WHEN t = 'DATE' THEN 7"
    " WHEN t LIKE 'TIMESTAMP%WITH TIME ZONE' THEN 13 WHEN t LIKE 'TIMESTAMP%' OR t LIKE 'INTERVAL DAY%' THEN "
    "11"
    " WHEN t LIKE 'INTERVAL YEAR%' THEN 5 WHEN t = 'BINARY_FLOAT' THEN 4 WHEN t = 'BINARY_DOUBLE' THEN 8"
    " WHEN t LIKE '%LOB' THEN 4000 WHEN t = 'BFILE' THEN 530 WHEN t = 'ROWID' THEN 10 ELSE 0 END AS INT) "
    "DATA_LENGTH,"
    " CAST(CASE WHEN t LIKE 'NUMBER(*%' THEN NULL"
    " WHEN t LIKE 'NUMBER(%' OR t LIKE 'FLOAT%' OR t LIKE 'INTERVAL%' THEN SUBSTRING_INDEX(a, ',', 1) END AS "
    "INT)"
    " DATA_PRECISION,"
    " CAST(CASE WHEN t LIKE 'NUMBER(%,%' THEN SUBSTRING_INDEX(a, ',', -1)"
    " WHEN t LIKE 'NUMBER(%' OR t LIKE 'INTERVAL YEAR%' THEN 0"
    " WHEN t LIKE 'TIMESTAMP%' THEN a WHEN t LIKE 'INTERVAL DAY%' THEN z END AS INT) DATA_SCALE,"
    " CAST(CASE WHEN t LIKE '%CHAR%' THEN SUBSTRING_INDEX(a, ' ', 1) ELSE 0 END AS INT) CHAR_LENGTH,"
    " CASE WHEN t LIKE '% CHAR)' OR t LIKE 'N%CHAR%' THEN 'C' WHEN t LIKE '%CHAR%' THEN 'B' END CHAR_USED";

// A sequence is a table to the server.
constexpr char kNoSequence[] =
    " AND c.table_name NOT IN (SELECT q.table_name FROM information_schema.tables q"
    " WHERE q.table_schema = c.table_schema AND q.table_type = 'SEQUENCE')";

std::string TabColumns(const Scope& scope) {
  const std::string owner = scope.is_all ? "OWNER, " : "";
  return "SELECT " + owner + "TABLE_NAME, COLUMN_NAME, " + kTypeColumns +
         ", NULLABLE, COLUMN_ID, DATA_DEFAULT FROM (SELECT d.*, " + kTypeArguments + " FROM (SELECT " +
         OwnerIfAll(scope, "c.table_schema") + Name("c.table_name", "TABLE_NAME") + ", " + kColumnName +
         ", " + kDeclaredType +
         ", CASE c.is_nullable WHEN 'YES' THEN 'Y' ELSE 'N' END NULLABLE, c.ordinal_position COLUMN_ID,"
         " c.column_default DATA_DEFAULT FROM information_schema.columns c" +
         scope.Where("c.table_schema") + kNoSequence + ") d) e";
}

struct View {
  std::string_view name;  // behind USER_ or ALL_
  std::string (*query)(const Scope&);
};

constexpr auto kViews = std::to_array<View>({
    {"TABLES", Tables},
    {"TAB_COLUMNS", TabColumns},
    {"VIEWS", Views},
    {"SEQUENCES", Sequences},
    {"OBJECTS", Objects},
    {"CONSTRAINTS", Constraints},
    {"CONS_COLUMNS", ConsColumns},
    {"INDEXES", Indexes},
    {"IND_COLUMNS", IndColumns},
});

std::optional<std::string> QueryOf(std::string_view name, const Scope& scope) {
  for (const View& view : kViews) {
    if (view.name == name) return view.query(scope);
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> DictionaryQuery(std::string_view view) {
  if (view.starts_with("USER_")) return QueryOf(view.substr(5), {false});
  if (view.starts_with("ALL_")) return QueryOf(view.substr(4), {true});
  if (view == "V$VERSION") return "SELECT CONCAT('MariaDB ', VERSION()) BANNER FROM DUAL";
  return std::nullopt;
}

}  // namespace ocimaria::sql
