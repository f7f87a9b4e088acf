// SPDX-License-Identifier: Apache-2.0
#include "lkbench/ColumnTypes.h"

#include <algorithm>
#include <vector>

#include "lkbench/Text.h"

namespace lkbench {
namespace {

struct Limits {
  std::int64_t low;
  std::int64_t high;
};

struct TypeRule {
  std::string name;
  size_t needed;                // numbers in the brackets: at least
  std::vector<Limits> numbers;  // at most this many, with these limits
  bool is_text = false;         // takes BYTE after the length
};

const std::vector<TypeRule>& Rules() {
  static const Limits kPrecision{1, 38}, kScale{-84, 127};
  static const std::vector<TypeRule> rules = {
      {"NUMBER", 0, {kPrecision, kScale}, false},
      {"NUMERIC", 0, {kPrecision, kScale}, false},
      {"DECIMAL", 0, {kPrecision, kScale}, false},
      {"DEC", 0, {kPrecision, kScale}, false},
      {"INTEGER", 0, {}, false},
      {"INT", 0, {}, false},
      {"SMALLINT", 0, {}, false},
      {"FLOAT", 0, {{1, 126}}, false},
      {"REAL", 0, {}, false},
      {"DOUBLE PRECISION", 0, {}, false},
      {"VARCHAR2", 1, {{1, 4000}}, true},
      {"VARCHAR", 1, {{1, 4000}}, true},
      {"CHAR", 0, {{1, 2000}}, true},
      {"DATE", 0, {}, false},
      {"TIMESTAMP", 0, {{0, 9}}, false},
      {"LONG", 0, {}, false},
  };
  return rules;
}

// "NUMBER (10, 2)" -> name NUMBER, arguments {"10", "2"}, rest "".
struct ParsedType {
  std::string name;
  std::vector<std::string> arguments;
  std::string rest;
};

std::string Trimmed(std::string text) {
  while (!text.empty() && text.back() == ' ') text.pop_back();
  text.erase(0, std::min(text.find_first_not_of(' '), text.size()));
  return text;
}

ParsedType Parse(const std::string& type) {
  ParsedType parsed;
  const size_t open = type.find('(');
  parsed.name = Trimmed(Upper(type.substr(0, open)));
  if (open == std::string::npos) return parsed;
  const size_t close = type.find(')', open);
  if (close == std::string::npos) {
    parsed.rest = type.substr(open);
    return parsed;
  }
  size_t begin = open + 1;
  for (size_t comma = type.find(',', begin); comma < close; comma = type.find(',', begin)) {
    parsed.arguments.push_back(Trimmed(type.substr(begin, comma - begin)));
    begin = comma + 1;
  }
  parsed.arguments.push_back(Trimmed(type.substr(begin, close - begin)));
  parsed.rest = Trimmed(type.substr(close + 1));
  return parsed;
}

std::string WithoutBytes(const std::string& length) {
  return Upper(length).ends_with(" BYTE") ? Trimmed(length.substr(0, length.size() - 5)) : length;
}

std::string ArgumentProblem(const TypeRule& rule, const ParsedType& parsed) {
  if (parsed.arguments.size() < rule.needed) return "it needs a length, as in " + rule.name + "(20)";
  if (parsed.arguments.size() > rule.numbers.size())
    return rule.name + " takes " + (rule.numbers.empty() ? "no" : Plural(rule.numbers.size(), "number")) +
           (rule.numbers.empty() ? " numbers" : "") + " in brackets";
  for (size_t i = 0; i < parsed.arguments.size(); ++i) {
    const std::string text = rule.is_text ? WithoutBytes(parsed.arguments[i]) : parsed.arguments[i];
    if (text == "*" && i == 0 && rule.numbers.size() == 2) continue;
    if (rule.is_text && Upper(text).ends_with(" CHAR"))
      return "its length must count bytes: the load makes as many letters as the column has bytes";
    std::int64_t number = 0;
    const Limits& limits = rule.numbers[i];
    if (!ParseInteger(text, number) || number < limits.low || number > limits.high)
      return '"' + Excerpt(text) + "\" must be a whole number from " + std::to_string(limits.low) + " to " +
             std::to_string(limits.high);
  }
  return {};
}

}  // namespace

std::string ColumnTypeProblem(const std::string& type) {
  const ParsedType parsed = Parse(type);
  const auto& rules = Rules();
  const auto rule = std::ranges::find(rules, parsed.name, &TypeRule::name);
  const std::string subject = "column type \"" + Excerpt(type) + "\" cannot be loaded: ";
  if (rule == rules.end() || !parsed.rest.empty()) {
    std::vector<std::string> names;
    names.reserve(rules.size());
    for (const TypeRule& each : rules) names.push_back(each.name);
    return subject + "use one of " + Join(names, ", ") + ", with its length or precision and nothing more";
  }
  const std::string problem = ArgumentProblem(*rule, parsed);
  return problem.empty() ? "" : subject + problem;
}

}  // namespace lkbench
