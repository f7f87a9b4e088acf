// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/ErrorClass.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <initializer_list>

namespace lkbench {
namespace {

constexpr long kForeignError = 28500;  // Oracle's number for an error of another database

using Numbers = std::initializer_list<long>;

struct ClassEntry {
  ErrorClass error_class;
  const char* name;
  Numbers oracle;
  Numbers mariadb;
};

// The client's own numbers (2002 and so on) stand among MariaDB's; no number is in two classes.
const std::array<ClassEntry, kErrorClasses> kClasses = {
    {{ErrorClass::kDuplicateKey, "duplicate-key", {1}, {1022, 1062, 1586}},
     {ErrorClass::kDeadlock, "deadlock", {60, 8177}, {1020, 1213, 1614}},
     {ErrorClass::kLockTimeout, "lock-timeout", {51, 54, 2049, 4021, 30006}, {1205, 1689}},
     {ErrorClass::kSessionLost,
      "session-lost",
      {28, 603, 1012, 1033, 1034, 1089, 1092, 2396, 3113, 3114, 3135, 12537, 12541, 12547, 12571, 25408},
      {1047, 1053, 1077, 1079, 1152, 1184, 1927, 2006, 2013, 2055}},
     {ErrorClass::kRefused,
      "refused",
      {18, 20, 1017, 1045, 12154, 12170, 12514, 12516, 12519, 12520, 12528, 12545, 28000, 28001, 28040,
       29024},
      {1040, 1045, 1049, 1129, 1130, 1203, 1226, 1251, 1524, 1698, 2002, 2003, 2005, 2026, 2059}},
     {ErrorClass::kNoSpace,
      "no-space",
      {257, 1536, 1631, 1632, 1652, 1653, 1654, 1688, 1691, 4030, 4031, 16038, 19809, 30036},
      {1021, 1037, 1038, 1041, 1114, 1206, 2008}},
     {ErrorClass::kCancelled, "cancelled", {1013, 40}, {1028, 1317, 1969}},
     {ErrorClass::kConstraint,
      "constraint",
      {1400, 1407, 2290, 2291, 2292, 2449},
      {1048, 1216, 1217, 1263, 1364, 1451, 1452, 1557, 1761, 1762, 3819, 4025}},
     {ErrorClass::kBadValue,
      "bad-value",
      {1401, 1406, 1426, 1438, 1455, 1457, 1461, 1722,  1830,  1839,
       1841, 1843, 1847, 1858, 1861, 1476, 6502, 12703, 12704, 12899},
      {1264, 1265, 1292, 1300, 1365, 1366, 1367, 1406, 1411, 1690, 2032}},
     {ErrorClass::kBadStatement,
      "bad-statement",
      {900,  902,  903,  904,  905,  906,  907,  909,  911,  913,  917,  918, 921,  922,
       923,  925,  926,  927,  932,  933,  936,  942,  947,  955,  957,  972, 1003, 1006,
       1008, 1036, 1418, 1430, 1435, 1789, 2289, 3001, 4043, 6550, 6576, 8103},
      {1046, 1050, 1051, 1052, 1054, 1060, 1061, 1064, 1091, 1103, 1109, 1136, 1146,
       1149, 1193, 1210, 1235, 1305, 1318, 1327, 1932, 4089, 4090, 4091, 4092}},
     {ErrorClass::kNoPrivilege, "no-privilege", {1031, 1720, 1950}, {1044, 1142, 1143, 1227, 1370}},
     {ErrorClass::kReadOnly, "read-only", {372, 1456, 12081, 16000}, {1036, 1290, 1792, 1836}},
     {ErrorClass::kOther, "other", {}, {}}}};

bool Has(const Numbers& numbers, long number) { return std::ranges::find(numbers, number) != numbers.end(); }

ErrorClass Find(Numbers ClassEntry::*side, long number) {
  const auto* found =
      std::ranges::find_if(kClasses, [&](const ClassEntry& each) { return Has(each.*side, number); });
  return found == kClasses.end() ? ErrorClass::kOther : found->error_class;
}

// The number in the first parentheses of a text; 0 when there is none.
long NumberInParentheses(std::string_view text) {
  long number = 0;
  const size_t open = text.find('(');
  if (open != std::string_view::npos)
    std::from_chars(text.data() + open + 1, text.data() + text.size(), number);
  return number;
}

}  // namespace

const char* NameOf(ErrorClass error_class) { return kClasses[static_cast<std::size_t>(error_class)].name; }

ErrorClass ClassOfMariaDb(long number) { return Find(&ClassEntry::mariadb, number); }

ErrorClass ClassOf(long number, std::string_view text) {
  if (number == kForeignError)
    return ClassOfMariaDb(NumberInParentheses(text.substr(std::min(text.find("ORA-28500"), text.size()))));
  return Find(&ClassEntry::oracle, number);
}

}  // namespace lkbench
