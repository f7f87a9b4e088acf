// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/Flags.h"

#include <algorithm>

#include "lkbench/JobKeys.h"
#include "lkbench/options/KeyTypes.h"

namespace lkbench {
namespace {

using enum Section;

const std::vector<Key<Invocation>> kFlags = {
    {"config", "FILE", "job file (TOML)", kGeneral, kPluginVerbs, FileName(&Invocation::config), {}, 'c'},
    {"debug", "", "as --log-level debug", kOutput, kPluginVerbs, Switch(&Invocation::debug)},
};

}  // namespace

std::span<const Key<Invocation>> InvocationFlags() { return kFlags; }

std::vector<KeyText> AllFlags() {
  std::vector<KeyText> flags;
  for (const auto& key : kFlags) flags.push_back(TextOf(key));
  for (const auto& key : JobKeys()) flags.push_back(TextOf(key));
  std::ranges::stable_sort(flags, {}, &KeyText::section);
  return flags;
}

JobValue ValueFromText(const KeyText& key, const std::string& place, const std::vector<std::string>& texts) {
  JobValue value{key.name, place, std::string(), true};
  if (key.form.shape != KeyShape::kRepeated) {
    value.value = texts.back();
    return value;
  }
  JobValue::List list;
  for (const std::string& text : texts) list.push_back({key.name, place, text, true});
  value.value = std::move(list);
  return value;
}

}  // namespace lkbench
