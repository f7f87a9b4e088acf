// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/Completion.h"

#include <algorithm>
#include <vector>

#include "lkbench/Text.h"
#include "lkbench/options/Flags.h"

namespace lkbench {
namespace {

std::vector<std::string> Spellings(const KeyText& key) {
  std::vector<std::string> all = {key.Flag()};
  if (key.letter != 0) all.push_back(std::string("-") + key.letter);
  return all;
}

std::vector<std::string> FlagWords(const VerbInfo& verb) {
  std::vector<std::string> words = {"--help"};
  for (const KeyText& key : AllFlags()) {
    if ((key.verbs & verb.bit) == 0) continue;
    words.push_back(key.Flag());
    if (key.form.shape == KeyShape::kSwitch) words.push_back("--no-" + key.Flag().substr(2));
  }
  return words;
}

// What may stand behind a verb: verbs, one of "a|b", or nothing that is known (folders and files).
std::vector<std::string> ArgumentWords(const VerbInfo& verb) {
  if (verb.arguments == "[VERB]") return VerbNames();
  std::vector<std::string> words;
  for (size_t begin = 0; verb.arguments.find('|') != std::string::npos && begin <= verb.arguments.size();) {
    const size_t end = std::min(verb.arguments.find('|', begin), verb.arguments.size());
    words.push_back(verb.arguments.substr(begin, end - begin));
    begin = end + 1;
  }
  return words;
}

bool TakesFiles(const VerbInfo& verb) { return !verb.arguments.empty() && ArgumentWords(verb).empty(); }

// The case of the value of a flag.
std::string BashValueCase(const KeyText& key) {
  if (key.form.shape == KeyShape::kSwitch) return {};
  const std::string pattern = "    " + Join(Spellings(key), "|") + ") ";
  if (key.form.is_file)
    return pattern +
           "compopt -o filenames 2>/dev/null; mapfile -t COMPREPLY < <(compgen -f -- \"$word\"); return ;;\n";
  if (key.form.choices.empty()) return pattern + "return ;;\n";
  return pattern + "mapfile -t COMPREPLY < <(compgen -W '" + Join(key.form.choices, " ") +
         "' -- \"$word\"); return ;;\n";
}

std::string BashVerbCase(const VerbInfo& verb) {
  std::vector<std::string> words = FlagWords(verb);
  std::ranges::copy(ArgumentWords(verb), std::back_inserter(words));
  return "    " + verb.name + ") words='" + Join(words, " ") + "'" + (TakesFiles(verb) ? "; files=1" : "") +
         " ;;\n";
}

// Text for the arguments of _arguments, within single quotes: colons and brackets are its own.
std::string ZshText(const std::string& text) {
  std::string quoted;
  for (const char c : text) {
    if (c == ':' || c == '[' || c == ']' || c == '\\') quoted += '\\';
    quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  }
  return quoted;
}

std::string ZshFlag(const KeyText& key) {
  const std::string repeat = key.form.shape == KeyShape::kRepeated ? "*" : "";
  std::string action = ":" + ZshText(key.value) + ":";
  if (key.form.is_file) action += "_files";
  if (!key.form.choices.empty()) action += '(' + Join(key.form.choices, " ") + ')';
  if (key.form.shape == KeyShape::kSwitch) action.clear();
  const std::string begin = " '" + repeat;
  const std::string end = '[' + ZshText(key.help) + ']' + action + "'";
  std::string specs;
  for (const std::string& spelling : Spellings(key)) specs.append(begin).append(spelling).append(end);
  return specs;
}

std::string ZshVerbCase(const VerbInfo& verb) {
  std::string specs = " '--help[its flags and examples]'";
  for (const KeyText& key : AllFlags())
    if ((key.verbs & verb.bit) != 0) specs += " \\\n       " + ZshFlag(key);
  const auto words = ArgumentWords(verb);
  if (!words.empty()) specs += " \\\n        '1:argument:(" + Join(words, " ") + ")'";
  if (TakesFiles(verb)) specs += " \\\n        '*:file:_files'";
  return "    " + verb.name + ")\n      _arguments" + specs + "\n      ;;\n";
}

}  // namespace

std::string BashCompletion() {
  std::string text =
      "# bash completion for lkbench, written by `lkbench completion bash`\n_lkbench() {\n"
      "  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]} verb= words= files= each\n"
      "  [[ $word == = ]] && word=\n"
      "  [[ $before == = ]] && before=${COMP_WORDS[COMP_CWORD-2]}\n"
      "  COMPREPLY=()\n"
      "  for each in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
      "    case $each in " +
      Join(VerbNames(), "|") +
      ") verb=$each; break ;; esac\n  done\n"
      "  case $before in\n";
  for (const KeyText& key : AllFlags()) text += BashValueCase(key);
  text += "  esac\n  case $verb in\n    '') words='" + Join(VerbNames(), " ") + " --help --version' ;;\n";
  for (const VerbInfo& verb : AllVerbs()) text += BashVerbCase(verb);
  return text +
         "  esac\n  mapfile -t COMPREPLY < <(compgen -W \"$words\" ${files:+-f} -- \"$word\")\n}\n"
         "complete -F _lkbench lkbench\n";
}

std::string ZshCompletion() {
  std::string text =
      "#compdef lkbench\n# zsh completion for lkbench, written by `lkbench completion zsh`\n"
      "_lkbench() {\n  local -a verbs=(\n";
  for (const VerbInfo& verb : AllVerbs())
    text += "    '" + ZshText(verb.name) + ':' + ZshText(verb.help) + "'\n";
  text +=
      "  )\n  if (( CURRENT == 2 )); then\n    _describe verb verbs\n    return\n  fi\n"
      "  local verb=$words[2]\n  shift words\n  (( CURRENT-- ))\n  case $verb in\n";
  for (const VerbInfo& verb : AllVerbs()) text += ZshVerbCase(verb);
  return text +
         "  esac\n}\n# autoloaded from fpath, or sourced\n"
         "if [[ $funcstack[1] == _lkbench ]]; then _lkbench \"$@\"; else compdef _lkbench lkbench; fi\n";
}

}  // namespace lkbench
