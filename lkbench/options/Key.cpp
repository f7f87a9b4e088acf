// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/Key.h"

#include <algorithm>

#include "lkbench/Text.h"

namespace lkbench {

const char* SectionTitle(Section section) {
  switch (section) {
    case Section::kGeneral:
      return "General";
    case Section::kTarget:
      return "Where to work";
    case Section::kTables:
      return "The tables";
    case Section::kLoad:
      return "The load";
    case Section::kWorkload:
      return "The workload";
    case Section::kPatience:
      return "Waiting for the database";
    case Section::kOutput:
      return "Output";
    case Section::kLibraries:
      return "Libraries";
  }
  return "";
}

std::string FlagOfKey(const std::string& name) {
  std::string flag = "--" + name;
  std::ranges::replace(flag, '_', '-');
  return flag;
}

std::string VariableOfKey(const std::string& name) { return "LKBENCH_" + Upper(name); }

std::string KeyText::Flag() const { return FlagOfKey(name); }

std::string KeyText::Variable() const { return VariableOfKey(name); }

std::string AsFlagValue(const std::string& toml) {
  std::string text = toml;
  std::erase_if(text, [](char c) { return c == '"'; });
  if (text.starts_with('{')) std::erase_if(text, [](char c) { return c == ' ' || c == '{' || c == '}'; });
  return text == "false" ? "" : text;
}

}  // namespace lkbench
