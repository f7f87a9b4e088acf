// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/Environment.h"

#include <unistd.h>

#include <algorithm>

#include "lkbench/Failure.h"
#include "lkbench/Text.h"
#include "lkbench/options/Flags.h"
#include "lkbench/options/PeerNames.h"

namespace lkbench {
namespace {

constexpr std::string_view kPrefix = "LKBENCH_";

std::vector<std::string> Parts(const std::string& text) {
  std::vector<std::string> parts;
  for (size_t begin = 0; begin <= text.size();) {
    const size_t end = std::min(text.find(';', begin), text.size());
    if (end > begin) parts.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return parts;
}

}  // namespace

std::vector<Variable> LkbenchVariables() {
  std::vector<Variable> variables;
  for (char** each = environ; *each != nullptr; ++each) {
    const std::string_view text = *each;
    const size_t equals = text.find('=');
    if (!text.starts_with(kPrefix) || equals == std::string_view::npos || equals + 1 == text.size()) continue;
    variables.push_back({std::string(text.substr(0, equals)), std::string(text.substr(equals + 1))});
  }
  std::ranges::sort(variables, {}, &Variable::name);
  return variables;
}

JobValue ValueOfVariable(const KeyText& key, const Variable& variable) {
  const bool is_list = key.form.shape == KeyShape::kRepeated;
  return ValueFromText(key, variable.name, is_list ? Parts(variable.value) : std::vector{variable.value});
}

void RefuseUnknownVariables(const std::vector<Variable>& variables, const std::string& password_source) {
  std::vector<std::string> known;
  for (const KeyText& key : AllFlags()) known.push_back(key.Variable());
  for (const Variable& variable : variables) {
    if (std::ranges::count(known, variable.name) > 0 || password_source == "env:" + variable.name) continue;
    throw UsageError("environment: unknown variable " + Excerpt(variable.name) +
                     DidYouMeanKey(variable.name, known, VariableOfKey) +
                     " (every variable that begins with LKBENCH_ is a setting)");
  }
}

}  // namespace lkbench
