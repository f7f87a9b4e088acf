// SPDX-License-Identifier: Apache-2.0
// A Key is one thing that a user may set: in the job file (users), by a flag (--users) and by an environment
// variable (LKBENCH_USERS). All that is said about it follows from its entry: help, man page, completion,
// checking, and the text that sets it again. Keys are values and belong to constant tables.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "lkbench/JobValue.h"
#include "lkbench/options/Verbs.h"

namespace lkbench {

enum class KeyShape { kOneValue, kSwitch, kRepeated };  // as a flag: --key VALUE, --key, --key VALUE ...

enum class Section { kGeneral, kTarget, kTables, kLoad, kWorkload, kPatience, kOutput, kLibraries };
inline constexpr Section kSections[] = {Section::kGeneral, Section::kTarget,   Section::kTables,
                                        Section::kLoad,    Section::kWorkload, Section::kPatience,
                                        Section::kOutput,  Section::kLibraries};
const char* SectionTitle(Section section);

// What a value looks like; for completion and the flag's form.
struct ValueForm {
  KeyShape shape = KeyShape::kOneValue;
  std::vector<std::string> choices = {};  // empty: any text
  bool is_file = false;
};

// How a value gets into its owner and out again. KeyTypes.h makes them.
template <class Owner>
struct KeyType {
  ValueForm form;
  std::function<void(Owner& owner, const JobValue& value)> set;  // throws UsageError
  std::function<std::string(const Owner& owner)> toml;           // what sets it again; empty: it is unset
};

template <class Owner>
struct Key {
  std::string name;
  std::string value;  // what stands for the value in help
  std::string help;
  Section section;
  Verbs verbs;  // that use it
  KeyType<Owner> type;
  std::string otherwise = {};  // what holds when it is unset; empty: its default says so
  char letter = 0;             // of the short flag
};

std::string FlagOfKey(const std::string& name);      // first_table as --first-table
std::string VariableOfKey(const std::string& name);  // first_table as LKBENCH_FIRST_TABLE

// The part of a key that does not depend on its owner.
struct KeyText {
  std::string name;
  std::string value;
  std::string help;
  std::string standard;  // its default as a flag would give it, or what holds without it; may be empty
  Section section;
  Verbs verbs;
  ValueForm form;
  char letter;

  std::string Flag() const;      // --first-table
  std::string Variable() const;  // LKBENCH_FIRST_TABLE
};

// A default in TOML as a flag would give it: no quotes, tables as a=1,b=2.
std::string AsFlagValue(const std::string& toml);

template <class Owner>
KeyText TextOf(const Key<Owner>& key) {
  const std::string standard = key.otherwise.empty() ? AsFlagValue(key.type.toml(Owner())) : key.otherwise;
  return {key.name, key.value, key.help, standard, key.section, key.verbs, key.type.form, key.letter};
}

}  // namespace lkbench
