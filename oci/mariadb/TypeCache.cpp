// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/TypeCache.h"

#include <atomic>
#include <cstdint>
#include <mutex>
#include <shared_mutex>
#include <unordered_map>

namespace ocimaria {
namespace {

struct Cache {
  std::shared_mutex mutex;
  std::atomic<std::uint64_t> generation = 0;  // changed under the lock only
  std::unordered_map<std::string, ColumnComments> tables;
};

Cache& TheCache() {
  static auto& cache = *new Cache;
  return cache;
}

constexpr std::size_t kMostTables = 10000;  // then it starts anew

bool SameTable(const MYSQL_FIELD& a, const MYSQL_FIELD& b) {
  return std::string_view(a.org_table) == b.org_table && std::string_view(a.db) == b.db;
}

// The server, the table and what the server says of its columns: another table of that name, or a changed
// one, has another key.
std::string KeyOf(PreparedStatement& statement, const MYSQL_FIELD& table) {
  std::string key = statement.Session().ServerName() + '\n' + table.db + '.' + table.org_table;
  for (unsigned i = 0; i < statement.FieldCount(); ++i) {
    const MYSQL_FIELD& field = statement.Fields()[i];
    if (!SameTable(field, table)) continue;
    (key += '\n') += field.org_name;
    for (const unsigned long part :
         {static_cast<unsigned long>(field.type), field.length, static_cast<unsigned long>(field.decimals),
          static_cast<unsigned long>(field.flags)})
      (key += ' ') += std::to_string(part);
  }
  return key;
}

ColumnComments ReadComments(Connection& connection, const MYSQL_FIELD& table) {
  ColumnComments comments;
  const auto rows = connection.Read(
      "SELECT LOWER(column_name), column_comment FROM information_schema.columns WHERE table_schema = " +
      connection.Literal(table.db) + " AND table_name = " + connection.Literal(table.org_table));
  for (const auto& row : rows) comments.emplace(row[0], row[1]);
  return comments;
}

}  // namespace

ColumnComments CommentsOf(PreparedStatement& statement, const MYSQL_FIELD& table) {
  Cache& cache = TheCache();
  const std::string key = KeyOf(statement, table);
  std::uint64_t generation = 0;
  {
    std::shared_lock lock(cache.mutex);
    const auto known = cache.tables.find(key);
    if (known != cache.tables.end()) return known->second;
    generation = cache.generation;
  }
  ColumnComments comments = ReadComments(statement.Session(), table);
  std::unique_lock lock(cache.mutex);
  if (cache.tables.size() >= kMostTables) cache.tables.clear();
  if (cache.generation == generation) cache.tables.emplace(key, comments);
  return comments;
}

void ForgetTypes() {
  std::unique_lock lock(TheCache().mutex);
  TheCache().tables.clear();
  ++TheCache().generation;
}

std::uint64_t TypeGeneration() { return TheCache().generation; }

ForgetTypesAfter::~ForgetTypesAfter() {
  if (m_wanted) ForgetTypes();
}

}  // namespace ocimaria
