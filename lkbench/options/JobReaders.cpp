// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/JobReaders.h"

#include <algorithm>

#include "lkbench/ColumnTypes.h"
#include "lkbench/Failure.h"
#include "lkbench/Text.h"
#include "lkbench/options/TomlText.h"

namespace lkbench {
namespace {

constexpr int kMostWeight = 10000;

int Int(const JobValue& value, int low, int high) { return static_cast<int>(value.Integer(low, high)); }

// "a=1,b=2" as the table it stands for.
JobValue::Table PairsOf(const JobValue& value) {
  if (const auto* table = std::get_if<JobValue::Table>(&value.value)) return *table;
  if (!value.is_flag)
    value.Refuse("a table of weights is needed, such as { insert = 40, update = 40, delete = 20 }");
  JobValue::Table pairs;
  const std::string& text = value.Text();
  for (size_t begin = 0; begin <= text.size();) {
    const size_t end = std::min(text.find(',', begin), text.size());
    const std::string pair = text.substr(begin, end - begin);
    const size_t equals = pair.find('=');
    if (equals == std::string::npos)
      value.Refuse("weights are needed, such as insert=40,update=40,delete=20");
    pairs.push_back(
        {pair.substr(0, equals), JobValue{value.key, value.place, pair.substr(equals + 1), value.is_flag}});
    begin = end + 1;
  }
  return pairs;
}

void SetMix(Phase& phase, const JobValue& value) {
  Mix mix{0, 0, 0};
  for (const auto& [name, weight] : PairsOf(value)) {
    const auto* part = std::ranges::find(kMixParts, name, &MixPart::name);
    if (part == kMixParts.end())
      throw UsageError(weight.place + ": mix has no transaction \"" + Excerpt(name) + "\"" +
                       DidYouMean(name, MixNames()) + " (" + Join(MixNames(), ", ") + " have weights)");
    mix.*part->weight = Int(weight, 0, kMostWeight);
  }
  if (std::ranges::all_of(kMixParts, [&](const MixPart& part) { return mix.*part.weight == 0; }))
    throw UsageError(value.place + ": mix needs at least one weight above 0");
  phase.mix = mix;
}

void CheckColumnType(const JobValue& place, const ColumnType& column) {
  const std::string problem = ColumnTypeProblem(column.type);
  if (!problem.empty()) throw UsageError(place.place + ": " + problem);
}

// TYPE, TYPE:WEIGHT or TYPE:WEIGHT:null
ColumnType ColumnFromText(const JobValue& value) {
  const std::string& text = value.Text();
  const size_t first = text.find(':');
  ColumnType column{text.substr(0, first), 1, false};
  if (first != std::string::npos) {
    const size_t second = text.find(':', first + 1);
    const JobValue weight{value.key, value.place, text.substr(first + 1, second - first - 1), true};
    column.weight = Int(weight, 0, kMostWeight);
    column.nullable = second != std::string::npos;
    if (column.nullable && Upper(text.substr(second + 1)) != "NULL")
      value.Refuse("the form is TYPE, TYPE:WEIGHT or TYPE:WEIGHT:null");
  }
  CheckColumnType(value, column);
  return column;
}

ColumnType ColumnFromTable(const JobValue& value) {
  const std::vector<std::string> names = {"type", "weight", "nullable"};
  ColumnType column;
  for (const auto& [name, field] : std::get<JobValue::Table>(value.value)) {
    if (name == "type")
      column.type = field.Text();
    else if (name == "weight")
      column.weight = Int(field, 0, kMostWeight);
    else if (name == "nullable")
      column.nullable = field.Boolean();
    else
      throw UsageError(field.place + ": a column type has no key \"" + Excerpt(name) + "\"" +
                       DidYouMean(name, names));
  }
  if (column.type.empty())
    value.Refuse("a column type needs its type, as in { type = \"NUMBER\", weight = 3 }");
  CheckColumnType(value, column);
  return column;
}

void SetColumnTypes(Job& job, const JobValue& value) {
  const auto* list = std::get_if<JobValue::List>(&value.value);
  if (list == nullptr)
    value.Refuse("a list of column types is needed, such as [{ type = \"NUMBER\", weight = 3 }]");
  std::vector<ColumnType> columns;
  int total = 0;
  for (const JobValue& each : *list) {
    const bool is_table = std::holds_alternative<JobValue::Table>(each.value);
    columns.push_back(is_table ? ColumnFromTable(each) : ColumnFromText(each));
    total += columns.back().weight;
  }
  if (columns.empty())
    throw UsageError(value.place + ": column_types has no column types: at least one is needed");
  if (total == 0)
    throw UsageError(value.place + ": column_types has only weights of 0: at least one must be above 0");
  job.column_types = std::move(columns);
}

void SetPassword(Job& job, const JobValue& value) {
  const std::string& text = value.Text();
  if (text != "prompt" && !text.starts_with("env:") && !text.starts_with("file:"))
    throw UsageError(value.place + ": password never stands here itself: use env:NAME, file:PATH or prompt");
  job.password = text;
}

std::string MixText(const Phase& phase) {
  std::vector<std::string> weights(kMixParts.size());
  std::ranges::transform(kMixParts, weights.begin(), [&](const MixPart& part) {
    return std::string(part.name) + " = " + std::to_string(phase.mix.*part.weight);
  });
  return "{ " + Join(weights, ", ") + " }";
}

std::string ColumnTypesText(const Job& job) {
  std::string text = "[\n";
  for (const ColumnType& column : job.column_types)
    text += "  { type = " + TomlText(column.type) + ", weight = " + std::to_string(column.weight) +
            (column.nullable ? ", nullable = true },\n" : " },\n");
  return text + "]";
}

bool IsLocal(const Job& job) { return job.target.empty() || job.target.starts_with("local:"); }

}  // namespace

KeyType<Phase> MixWeights() { return {.form = {}, .set = SetMix, .toml = MixText}; }

KeyType<Job> ColumnTypeList() {
  return {.form = {.shape = KeyShape::kRepeated}, .set = SetColumnTypes, .toml = ColumnTypesText};
}

KeyType<Job> ServerDurability() {
  static const std::vector<std::string> kNames = {"durable", "relaxed"};
  return {.form = {.choices = kNames},
          .set =
              [](Job& job, const JobValue& value) {
                job.server.durability = static_cast<localdb::Durability>(value.OneOf(kNames));
              },
          .toml =
              [](const Job& job) {
                return IsLocal(job) ? TomlText(kNames.at(static_cast<size_t>(job.server.durability))) : "";
              }};
}

KeyType<Job> ServerSize(std::uint64_t localdb::Settings::*member, std::uint64_t low, std::uint64_t high) {
  return {.form = {},
          .set = [=](Job& job, const JobValue& value) { job.server.*member = value.Size(low, high); },
          .toml =
              [=](const Job& job) {
                return IsLocal(job) ? TomlText(SizeText(job.server.*member)) : std::string();
              }};
}

KeyType<Job> PasswordSource() {
  KeyType<Job> type = Words(&Job::password);
  type.set = SetPassword;
  return type;
}

}  // namespace lkbench
