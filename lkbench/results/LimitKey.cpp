// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/LimitKey.h"

#include "lkbench/Failure.h"

namespace lkbench {
namespace {

void Add(std::vector<Limit>& limits, Limit limit, const std::string& place) {
  for (const Limit& other : limits)
    if (other.name == limit.name && other.below == limit.below)
      throw UsageError(place + ": limit " + limit.name + " is set twice");
  limits.push_back(std::move(limit));
}

// insert.p99 = "<20ms" without quotes around the name is a table in a table; its name is put together again.
void AddTable(std::vector<Limit>& limits, const std::string& prefix, const JobValue::Table& table) {
  for (const auto& [name, value] : table) {
    if (const auto* inner = std::get_if<JobValue::Table>(&value.value))
      AddTable(limits, prefix + name + ".", *inner);
    else
      Add(limits, ParseLimit(prefix + name, value.Text(), value.place), value.place);
  }
}

// "insert.p99<20ms"
void AddText(std::vector<Limit>& limits, const JobValue& value) {
  const std::string& text = value.Text();
  const size_t sign = text.find_first_of("<>");
  if (sign == std::string::npos) value.Refuse("a limit is needed, such as insert.p99<20ms");
  std::string name = text.substr(0, sign);
  name.erase(name.find_last_not_of(' ') + 1);
  Add(limits, ParseLimit(name, text.substr(sign), value.place), value.place);
}

void SetLimits(Job& job, const JobValue& value) {
  std::vector<Limit> limits;
  if (const auto* table = std::get_if<JobValue::Table>(&value.value))
    AddTable(limits, "", *table);
  else if (const auto* list = std::get_if<JobValue::List>(&value.value))
    for (const JobValue& each : *list) AddText(limits, each);
  else
    value.Refuse("a table of limits is needed, such as { \"insert.p99\" = \"<20ms\" }");
  job.limits = std::move(limits);
}

std::string LimitsText(const Job& job) {
  if (job.limits.empty()) return {};
  std::string text;
  bool is_table = true;  // two limits of one name, above and below, only go into a list
  for (const Limit& limit : job.limits)
    for (const Limit& other : job.limits) is_table &= &limit == &other || limit.name != other.name;
  for (const Limit& limit : job.limits)
    text += (text.empty() ? "" : ", ") + (is_table ? TomlText(limit.name) + " = " + TomlText(limit.asked)
                                                   : TomlText(limit.name + limit.asked));
  return is_table ? "{ " + text + " }" : "[" + text + "]";
}

}  // namespace

KeyType<Job> LimitTable() {
  return {.form = {.shape = KeyShape::kRepeated}, .set = SetLimits, .toml = LimitsText};
}

}  // namespace lkbench
