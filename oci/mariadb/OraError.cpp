// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/OraError.h"

#include "oci/mariadb/ErrorTable.h"

namespace ocimaria {
namespace {

// Arguments that are missing leave their place empty; arguments too many are dropped.
std::string Fill(std::string_view text, std::initializer_list<std::string_view> arguments) {
  std::string filled;
  auto argument = arguments.begin();
  for (auto place = text.find("{}"); place != text.npos; place = text.find("{}")) {
    filled += text.substr(0, place);
    if (argument != arguments.end()) filled += *argument++;
    text.remove_prefix(place + 2);
  }
  return filled += text;
}

std::string TextOf(int code, std::initializer_list<std::string_view> arguments) {
  const ErrorEntry* entry = FindError(code);
  return entry ? Fill(entry->text, arguments) : "Message " + std::to_string(code) + " not found";
}

}  // namespace

OraError::OraError(int code, std::initializer_list<std::string_view> arguments, SourcePlace place)
    : OraError(code, TextOf(code, arguments), place) {}

OraError OraError::WithText(int code, std::string text, SourcePlace place) {
  return OraError(code, std::move(text), place);
}

}  // namespace ocimaria
