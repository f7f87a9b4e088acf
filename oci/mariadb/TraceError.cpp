// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/TraceError.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string_view>

#include "oci/mariadb/ErrorTable.h"
#include "oci/mariadb/Trace.h"

namespace ocimaria::trace {
namespace {

// Server errors whose texts name tables, columns, accounts, connections or a part of the statement, and never
// a value. Every other text is taken to hold one.
constexpr auto kNamesOnly = std::to_array<unsigned>(
    {1040, 1044, 1045, 1046, 1047, 1048, 1049, 1050, 1051, 1052, 1053, 1054, 1055, 1056, 1059, 1060, 1061,
     1064, 1068, 1071, 1072, 1074, 1091, 1103, 1111, 1136, 1140, 1142, 1143, 1146, 1153, 1166, 1203, 1205,
     1213, 1226, 1227, 1235, 1264, 1290, 1305, 1317, 1364, 1370, 1406, 1451, 1452, 1524, 1568, 1698, 1792,
     1836, 1927, 1969, 2002, 2003, 2005, 2006, 2013, 2026, 2055, 2059, 4025, 4084, 4091});
static_assert(std::ranges::is_sorted(kNamesOnly));

constexpr unsigned kDuplicateKey = 1062;  // quotes the value first and the name of the key last

// Inside a block the text may be of the block's own making, under any number.
bool IsShown(const ServerOrigin& server) {
  return !server.in_block && std::ranges::binary_search(kNamesOnly, server.number);
}

std::string ServerText(const ServerOrigin& server) {
  if (IsShown(server)) return OneLine(server.text);
  const auto key = server.number == kDuplicateKey ? server.text.rfind("' for key '") : std::string::npos;
  return key == std::string::npos ? "(text left out: it may hold values)"
                                  : "(value left out)" + OneLine(server.text.substr(key + 1));
}

std::string WithoutArguments(int code) {
  const ErrorEntry* entry = FindError(code);
  std::string text(entry ? entry->text : "");
  for (auto place = text.find("{}"); place != text.npos; place = text.find("{}"))
    text.replace(place, 2, "...");
  return text;
}

bool HidesArguments(const ServerOrigin& server) {
  return server.number != 0 && server.number != kDuplicateKey && !IsShown(server);
}

std::string Origin(const OraError& error) {
  const ServerOrigin& server = error.Server();
  if (server.number != 0) return "; server " + std::to_string(server.number) + ": " + ServerText(server);
  const std::string_view file = error.Place().file;
  return "; at " + std::string(file.substr(file.rfind('/') + 1)) + ":" + std::to_string(error.Place().line);
}

}  // namespace

std::string ErrorText(const OraError& error) {
  char number[20];
  std::snprintf(number, sizeof number, "ORA-%05d: ", error.Code());
  const bool hidden = HidesArguments(error.Server());
  return number + OneLine(hidden ? WithoutArguments(error.Code()) : error.Text()) + Origin(error);
}

}  // namespace ocimaria::trace
