// SPDX-License-Identifier: Apache-2.0
#include "lkbench/JobFile.h"

#include <toml++/toml.h>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <system_error>

#include "lkbench/Failure.h"
#include "lkbench/JobKeys.h"
#include "lkbench/Text.h"
#include "lkbench/options/PeerNames.h"

namespace lkbench {
namespace {

std::string Place(const std::string& path, const toml::source_region& source) {
  return path + ':' + std::to_string(source.begin.line);
}

JobValue ValueOf(const std::string& key, const toml::node& node, const std::string& path);

JobValue::Table TableOf(const std::string& key, const toml::table& table, const std::string& path) {
  JobValue::Table pairs;
  for (const auto& [name, node] : table) pairs.push_back({std::string(name.str()), ValueOf(key, node, path)});
  return pairs;
}

JobValue::List ListOf(const std::string& key, const toml::array& array, const std::string& path) {
  JobValue::List list;
  for (const toml::node& node : array) list.push_back(ValueOf(key, node, path));
  return list;
}

JobValue ValueOf(const std::string& key, const toml::node& node, const std::string& path) {
  JobValue value{key, Place(path, node.source()), std::string(), false};
  if (const auto* table = node.as_table())
    value.value = TableOf(key, *table, path);
  else if (const auto* array = node.as_array())
    value.value = ListOf(key, *array, path);
  else if (const auto* integer = node.as_integer())
    value.value = integer->get();
  else if (const auto* real = node.as_floating_point())
    value.value = real->get();
  else if (const auto* boolean = node.as_boolean())
    value.value = boolean->get();
  else if (const auto* text = node.as_string())
    value.value = text->get();
  else
    throw UsageError(value.place + ": " + key + " cannot be a date or time: no key has such a value");
  return value;
}

}  // namespace

void ReadJobText(Job& job, std::string_view text, const std::string& path) {
  toml::table document;
  try {
    document = toml::parse(text, path);
  } catch (const toml::parse_error& error) {
    throw UsageError(Place(path, error.source()) + ": " + Excerpt(error.description(), 200));
  }
  for (const auto& [name, node] : document) {
    const std::string key(name.str());
    const JobKey* known = FindJobKey(key);
    if (known == nullptr) {
      const std::string nearest = DidYouMeanKey(key, JobKeyNames(), std::identity());
      throw UsageError(Place(path, name.source()) + ": unknown key \"" + Excerpt(key) + '"' +
                       (nearest.empty() && node.is_table()
                            ? ": keys stand at the top of the file, without a [table]"
                            : nearest));
    }
    SetJobKey(job, *known, ValueOf(key, node, path));
  }
}

void ReadJobFile(Job& job, const std::string& path) {
  std::error_code unknown;
  if (std::filesystem::is_directory(path, unknown))
    throw UsageError("job file " + path + " cannot be read: it is a folder");
  std::ifstream file(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(file), {}};
  if (!file.is_open() || file.bad())
    throw UsageError("job file " + path + " cannot be read: " + std::generic_category().message(errno));
  ReadJobText(job, text, path);
}

}  // namespace lkbench
