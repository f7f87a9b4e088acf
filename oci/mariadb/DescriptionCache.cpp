// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/DescriptionCache.h"

#include <cstdint>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <unordered_map>

#include "oci/mariadb/Describe.h"
#include "oci/mariadb/TypeCache.h"

namespace ocimaria {
namespace {

struct Known {
  std::uint64_t generation;  // of the declared types
  std::shared_ptr<const Description> description;
};

struct Cache {
  std::shared_mutex mutex;
  std::unordered_map<std::string, Known> descriptions;
};

Cache& TheCache() {
  static auto& cache = *new Cache;
  return cache;
}

constexpr std::size_t kMostDescriptions = 1000;  // then it starts anew

void AppendText(std::string& key, const char* text, unsigned length) {
  key.append(reinterpret_cast<const char*>(&length), sizeof length);
  key.append(text, length);
}

void AppendField(std::string& key, const MYSQL_FIELD& field) {
  AppendText(key, field.db, field.db_length);
  AppendText(key, field.org_table, field.org_table_length);
  AppendText(key, field.name, field.name_length);
  AppendText(key, field.org_name, field.org_name_length);
  const std::uint64_t numbers[] = {field.length, std::uint64_t{field.flags} << 32 | field.charsetnr,
                                   std::uint64_t{field.decimals} << 32 | static_cast<unsigned>(field.type)};
  key.append(reinterpret_cast<const char*>(numbers), sizeof numbers);
}

std::string KeyOf(PreparedStatement& statement, std::string_view oracle_text) {
  constexpr std::size_t kBytesPerField = 100;
  std::string key = statement.Session().ServerName();
  key.reserve(key.size() + oracle_text.size() + kBytesPerField * statement.FieldCount());
  (key += '\n') += oracle_text;
  key += '\0';
  for (unsigned i = 0; i < statement.FieldCount(); ++i) AppendField(key, statement.Fields()[i]);
  return key;
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
    if (known != cache.descriptions.end() && known->second.generation == generation)
      return known->second.description;
  }
  auto description = Describe(statement, oracle_text);
  std::unique_lock lock(cache.mutex);
  if (cache.descriptions.size() >= kMostDescriptions) cache.descriptions.clear();
  cache.descriptions.insert_or_assign(std::move(key), Known{generation, description});
  return description;
}

}  // namespace ocimaria
