// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/ParsedText.h"

#include <algorithm>
#include <cctype>
#include <functional>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <unordered_map>

namespace ocimaria {
namespace {

struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
};

struct Cache {
  std::shared_mutex mutex;
  std::unordered_map<std::string, std::shared_ptr<const ParsedText>, TextHash, std::equal_to<>> texts;
};

Cache& TheCache() {
  static auto& cache = *new Cache;
  return cache;
}

constexpr std::size_t kMostTexts = 1000;     // then it starts anew
constexpr std::size_t kLongestText = 16384;  // longer ones are not kept

// The server takes a block's NO_DATA_FOUND that nobody handles for a warning and goes on; Oracle ends the
// block.
std::string RaisingNoData(const std::string& block) {
  return "BEGIN " + block +
         "\nEXCEPTION WHEN NO_DATA_FOUND THEN SIGNAL SQLSTATE '45000' SET MYSQL_ERRNO = 1329, MESSAGE_TEXT = "
         "'no data "
         "found'; END;";
}

// Only of an INSERT without a query the server makes one atomic statement. The word may stand in a literal
// too; the insert is then merely slower.
bool IsPlainInsert(const sql::Rewritten& sql) {
  if (sql.type != OCI_STMT_INSERT) return false;
  constexpr std::string_view kSelect = "SELECT";
  const auto same = [](unsigned char a, unsigned char b) { return std::toupper(a) == b; };
  return std::search(sql.text.begin(), sql.text.end(), kSelect.begin(), kSelect.end(), same) ==
         sql.text.end();
}

std::shared_ptr<const ParsedText> WorkOut(std::string_view oracle_text) {
  auto parsed = std::make_shared<ParsedText>();
  parsed->sql = sql::Rewrite(oracle_text);
  if (parsed->sql.is_block) parsed->sql.text = RaisingNoData(parsed->sql.text);
  parsed->is_plain_insert = IsPlainInsert(parsed->sql);
  for (const sql::Placeholder& placeholder : parsed->sql.placeholders)
    parsed->masks.push_back(placeholder.date_mask.empty()
                                ? nullptr
                                : std::make_shared<const sql::DateMask>(placeholder.date_mask));
  return parsed;
}

// A text with its values in it hardly comes twice.
bool ComesAgain(const sql::Rewritten& sql) { return sql.is_query || !sql.placeholders.empty(); }

}  // namespace

std::shared_ptr<const ParsedText> Parse(std::string_view oracle_text) {
  Cache& cache = TheCache();
  {
    std::shared_lock lock(cache.mutex);
    const auto known = cache.texts.find(oracle_text);
    if (known != cache.texts.end()) return known->second;
  }
  auto parsed = WorkOut(oracle_text);
  if (!ComesAgain(parsed->sql) || oracle_text.size() > kLongestText) return parsed;
  std::unique_lock lock(cache.mutex);
  if (cache.texts.size() >= kMostTexts) cache.texts.clear();
  return cache.texts.emplace(oracle_text, std::move(parsed)).first->second;
}

}  // namespace ocimaria
