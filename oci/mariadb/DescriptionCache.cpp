// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/DescriptionCache.h"

#include <array>
#include <cstdint>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "oci/mariadb/Describe.h"
#include "oci/mariadb/TypeCache.h"

namespace ocimaria {
namespace {

// What the server said of a column.
struct SeenField {
  explicit SeenField(const MYSQL_FIELD& field)
      : schema(field.db, field.db_length),
        table(field.org_table, field.org_table_length),
        name(field.name, field.name_length),
        column(field.org_name, field.org_name_length),
        numbers(NumbersOf(field)) {}

  bool Is(const MYSQL_FIELD& field) const {
    return numbers == NumbersOf(field) && name == std::string_view(field.name, field.name_length) &&
           column == std::string_view(field.org_name, field.org_name_length) &&
           table == std::string_view(field.org_table, field.org_table_length) &&
           schema == std::string_view(field.db, field.db_length);
  }

 private:
  using Numbers = std::array<unsigned long, 5>;
  static Numbers NumbersOf(const MYSQL_FIELD& field) {
    return {field.length, field.flags, field.charsetnr, field.decimals, field.type};
  }

  std::string schema, table, name, column;
  Numbers numbers;
};

struct Known {
  std::uint64_t generation;  // of the declared types
  std::vector<SeenField> fields;
  std::shared_ptr<const Description> description;

  bool IsOf(PreparedStatement& statement, std::uint64_t now) const {
    if (generation != now || fields.size() != statement.FieldCount()) return false;
    for (std::size_t i = 0; i < fields.size(); ++i)
      if (!fields[i].Is(statement.Fields()[i])) return false;
    return true;
  }
};

struct Cache {
  std::shared_mutex mutex;
  std::unordered_map<std::string, Known> descriptions;  // the last one of each text on each server
};

Cache& TheCache() {
  static auto& cache = *new Cache;
  return cache;
}

constexpr std::size_t kMostDescriptions = 1000;  // then it starts anew

std::string KeyOf(PreparedStatement& statement, std::string_view oracle_text) {
  const std::string& server = statement.Session().ServerName();
  std::string key;
  key.reserve(server.size() + 1 + oracle_text.size());
  return key.append(server).append(1, '\n').append(oracle_text);
}

Known Seen(PreparedStatement& statement, std::uint64_t generation,
           std::shared_ptr<const Description> description) {
  const MYSQL_FIELD* fields = statement.Fields();
  return {generation, {fields, fields + statement.FieldCount()}, std::move(description)};
}

}  // namespace

std::shared_ptr<const Description> DescribeOrRecall(PreparedStatement& statement,
                                                    std::string_view oracle_text) {
  Cache& cache = TheCache();
  std::string key = KeyOf(statement, oracle_text);
  const std::uint64_t generation = TypeGeneration();
  {
    std::shared_lock lock(cache.mutex);
    const auto known = cache.descriptions.find(key);
    if (known != cache.descriptions.end() && known->second.IsOf(statement, generation))
      return known->second.description;
  }
  auto description = Describe(statement, oracle_text);
  std::unique_lock lock(cache.mutex);
  if (cache.descriptions.size() >= kMostDescriptions) cache.descriptions.clear();
  cache.descriptions.insert_or_assign(std::move(key), Seen(statement, generation, description));
  return description;
}

}  // namespace ocimaria
