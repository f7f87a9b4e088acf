// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/ErrorMap.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

#include "oci/mariadb/ErrorTable.h"
#include "oci/mariadb/sql/ServerMessage.h"
#include "oci/mariadb/sql/TextCase.h"

namespace ocimaria::sql {
namespace {

using Message = std::string_view;

std::string SchemaDot(const ErrorContext& context) {
  return context.schema.empty() ? std::string() : UpperCase(context.schema) + ".";
}

// "SCHEMA"."TABLE"."COLUMN" as far as they are known.
std::string ColumnName(const ErrorContext& context, std::string_view column) {
  std::string dotted;
  if (!context.table.empty()) dotted.append(SchemaDot(context)).append(context.table).append(".");
  return QuotedName(dotted.append(LastName(column)));
}

// Some texts have their argument in parentheses of their own: without an argument those go, too.
OraError WithName(int code, std::string_view name) {
  if (!name.empty()) return OraError(code, {name});
  std::string text(FindError(code)->text);
  const auto place = text.find(" ({})");
  if (place == text.npos) return OraError(code);
  return OraError::WithText(code, text.erase(place, 5));
}

// The server calls every primary key PRIMARY; the dictionary views name it after its table.
OraError UniqueViolated(Message message, const ErrorContext& context) {
  std::string key = UpperCase(LastName(LastQuoted(message)));
  if (key == "PRIMARY") key = context.table.empty() ? "PRIMARY" : "PK_" + std::string(context.table);
  return WithName(1, SchemaDot(context) + key);
}

OraError NullRefused(Message message, const ErrorContext& context) {
  const int code = context.statement_type == OCI_STMT_UPDATE ? 1407 : 1400;
  return OraError(code, {ColumnName(context, Quoted(message, 0))});
}

OraError InvalidIdentifier(Message message, const ErrorContext&) {
  return OraError::WithText(904, QuotedName(Quoted(message, 0)) + ": invalid identifier");
}

OraError TooLarge(std::string_view column, const ErrorContext& context) {
  return OraError::WithText(12899, "value too large for column " + ColumnName(context, column));
}

OraError TooLong(Message message, const ErrorContext& context) {
  return TooLarge(Quoted(message, 0), context);
}

OraError CheckViolated(Message message, const ErrorContext& context) {
  const auto name = Quoted(message, 0);
  if (name.starts_with(kLengthCheckPrefix)) return TooLarge(name.substr(kLengthCheckPrefix.size()), context);
  return WithName(2290, SchemaDot(context) + UpperCase(LastName(name)));
}

std::string ForeignKeyName(Message message, const ErrorContext& context) {
  std::string_view name = Between(message, "CONSTRAINT \"", "\"");
  if (name.empty()) name = Between(message, "CONSTRAINT `", "`");
  return name.empty() ? std::string() : SchemaDot(context) + UpperCase(name);
}

OraError ParentMissing(Message message, const ErrorContext& context) {
  return WithName(2291, ForeignKeyName(message, context));
}

OraError ChildFound(Message message, const ErrorContext& context) {
  if (context.is_ddl) return OraError(2449);
  return WithName(2292, ForeignKeyName(message, context));
}

OraError PlSqlError(Message message, const std::string& text) {
  return OraError(6550, {LineOf(message), "1", text});
}

OraError SyntaxError(Message message, const ErrorContext& context) {
  constexpr Message kNear = "right syntax to use near ";
  const auto found = message.find(kNear);
  const Message near = found == message.npos ? Message() : message.substr(found + kNear.size());
  if (context.is_block) {
    return PlSqlError(message,
                      "PLS-00103: Encountered a symbol that was not expected, near " + std::string(near));
  }
  int code = near.starts_with("''") ? 936 : 933;
  if (context.is_ddl) code = 922;
  if (!context.is_ddl && context.statement_type == OCI_STMT_UNKNOWN) code = 900;
  std::string text(FindError(code)->text);
  if (!near.empty()) text.append(" (near ").append(near).append(")");
  return OraError::WithText(code, std::move(text));
}

OraError LockNotGranted(Message, const ErrorContext& context) {
  return OraError(context.is_ddl || context.no_wait ? 54 : 30006);
}

OraError DuplicateColumn(Message, const ErrorContext& context) {
  return OraError(context.statement_type == OCI_STMT_ALTER ? 1430 : 957);
}

OraError CannotDrop(Message message, const ErrorContext& context) {
  if (message.find("DROP COLUMN") != message.npos) return InvalidIdentifier(message, context);
  if (message.find("`PRIMARY`") != message.npos) return OraError(2441);
  const bool is_constraint =
      message.find("CONSTRAINT") != message.npos || message.find("FOREIGN") != message.npos;
  return OraError(is_constraint ? 2443 : 1418);
}

OraError MissingRoutine(Message message, const ErrorContext& context) {
  if (message.starts_with("SAVEPOINT "))
    return OraError(1086, {UpperCase(Between(message, "SAVEPOINT ", " "))});
  const std::string name = UpperCase(LastName(Between(message, " ", " ")));
  if (context.is_block) return PlSqlError(message, "PLS-00201: identifier '" + name + "' must be declared");
  if (message.starts_with("PROCEDURE ")) return OraError(6576);
  return OraError(904, {name});
}

OraError Undeclared(Message message, const ErrorContext&) {
  const std::string name = UpperCase(Between(message, "'", "'"));
  return PlSqlError(message, "PLS-00201: identifier '" + name + "' must be declared");
}

OraError WrongArguments(Message message, const ErrorContext& context) {
  if (!context.is_block) return OraError(909);
  return PlSqlError(message, "PLS-00306: wrong number or types of arguments in call");
}

OraError SequenceRunOut(Message message, const ErrorContext&) {
  return OraError(8004, {UpperCase(LastName(Quoted(message, 0)))});
}

// The client library tells a connection that came too late by the system's error number alone.
bool CameTooLate(Message message) {
  constexpr Message kTimedOut[] = {"(110)", "system error: 110"};
  return std::ranges::any_of(kTimedOut, [&](Message each) { return message.find(each) != message.npos; });
}

OraError NoListener(Message message, const ErrorContext&) {
  return OraError(CameTooLate(message) ? 12170 : 12541);
}

OraError LostLink(Message message, const ErrorContext& context) {
  return OraError(context.connecting && CameTooLate(message) ? 12170 : 3113);
}

OraError UnknownSchema(Message, const ErrorContext& context) {
  return OraError(context.connecting ? 12514 : 1435);
}

int TwoDigits(std::string_view text, std::size_t at) {
  int value = -1;
  if (at + 2 <= text.size()) std::from_chars(text.data() + at, text.data() + at + 2, value);
  return value;
}

// By the value: a text of the form YYYY-MM-DD says which of its parts is wrong.
int DateErrorOf(std::string_view value) {
  if (value.size() < 10 || value[4] != '-' || value[7] != '-') return 1861;
  const int month = TwoDigits(value, 5);
  const int day = TwoDigits(value, 8);
  if (month < 0 || day < 0) return 1861;
  if (month < 1 || month > 12) return 1843;
  if (day < 1 || day > 31) return 1847;
  return day > 28 ? 1839 : 1861;
}

// One number of the server for every value that does not convert.
OraError BadValue(Message message, const ErrorContext&) {
  if (message.find("string value") != message.npos) return OraError(12703);
  if (message.find("datetime value") != message.npos || message.find("time value") != message.npos ||
      message.find("date value") != message.npos) {
    return OraError(DateErrorOf(Quoted(message, 0)));
  }
  return OraError(1722);
}

OraError OutOfSpace(Message message, const ErrorContext& context) {
  std::string table = UpperCase(LastName(Quoted(message, 0)));
  return OraError(1653, {SchemaDot(context) + table});
}

OraError OutOfMemory(Message message, const ErrorContext&) {
  const auto bytes = Between(message, "needed ", " bytes");
  if (bytes.empty()) return OraError::WithText(4031, "unable to allocate shared memory");
  return OraError(4031, {bytes});
}

OraError Unsupported(Message message, const ErrorContext&) {
  return OraError::WithText(3001, "unimplemented feature: " + std::string(message));
}

// Either a fixed number or a function that decides.
struct Mapping {
  unsigned number;
  int code;
  OraError (*decide)(Message, const ErrorContext&) = nullptr;
};

constexpr auto kMappings = std::to_array<Mapping>({
    {1021, 0, OutOfSpace},
    {1037, 0, OutOfMemory},
    {1038, 0, OutOfMemory},
    {1040, 18},
    {1041, 0, OutOfMemory},
    {1044, 1031},
    {1045, 1017},
    {1047, 1033},
    {1048, 0, NullRefused},
    {1049, 0, UnknownSchema},
    {1050, 955},
    {1051, 942},
    {1052, 918},
    {1053, 1089},
    {1054, 0, InvalidIdentifier},
    {1055, 979},
    {1056, 979},
    {1059, 972},
    {1060, 0, DuplicateColumn},
    {1061, 955},
    {1062, 0, UniqueViolated},
    {1064, 0, SyntaxError},
    {1068, 2260},
    {1071, 1450},
    {1072, 0, InvalidIdentifier},
    {1074, 910},
    {1091, 0, CannotDrop},
    {1103, 903},
    {1111, 934},
    {1114, 0, OutOfSpace},
    {1136, 947},
    {1140, 937},
    {1142, 1031},
    {1143, 1031},
    {1146, 942},
    {1166, 0, InvalidIdentifier},
    {1172, 1422},
    {1180, 3113},
    {1193, 0, Undeclared},
    {1203, 18},
    {1205, 0, LockNotGranted},
    {1213, 60},
    {1216, 0, ParentMissing},
    {1217, 0, ChildFound},
    {1222, 1789},
    {1226, 18},
    {1227, 1031},
    {1235, 0, Unsupported},
    {1242, 1427},
    {1251, 28040},
    {1263, 0, NullRefused},
    {1264, 1438},
    {1265, 0, BadValue},
    {1267, 12704},
    {1270, 12704},
    {1271, 12704},
    {1290, 16000},
    {1292, 0, BadValue},
    {1300, 12703},
    {1305, 0, MissingRoutine},
    {1317, 1013},
    {1318, 0, WrongArguments},
    {1327, 0, Undeclared},
    {1329, 1403},
    {1364, 0, NullRefused},
    {1365, 1476},
    {1366, 0, BadValue},
    {1370, 1031},
    {1406, 0, TooLong},
    {1411, 0, BadValue},
    {1425, 1728},
    {1426, 1727},
    {1427, 1728},
    {1441, 1841},
    {1451, 0, ChildFound},
    {1452, 0, ParentMissing},
    {1461, 1000},
    {1524, 28040},
    {1568, 1453},
    {1582, 0, WrongArguments},
    {1690, 1426},
    {1698, 1017},
    {1792, 1456},
    {1826, 2264},
    {1836, 16000},
    {1927, 28},
    {1969, 1013},
    {2002, 0, NoListener},
    {2003, 0, NoListener},
    {2005, 12545},
    {2006, 3114},
    {2013, 0, LostLink},
    {2026, 29024},
    {2055, 3113},
    {2059, 28040},
    {4025, 0, CheckViolated},
    {4084, 0, SequenceRunOut},
    {4089, 2289},
    {4090, 2289},
    {4091, 2289},
    {4092, 942},
    {4161, 902},
});
static_assert(std::ranges::is_sorted(kMappings, {}, &Mapping::number));

OraError Foreign(unsigned number, Message message) {
  return OraError(28500, {"(" + std::to_string(number) + ") " + std::string(message)});
}

}  // namespace

OraError MapServerError(unsigned number, std::string_view message, const ErrorContext& context) {
  const auto found = std::ranges::lower_bound(kMappings, number, {}, &Mapping::number);
  if (found == kMappings.end() || found->number != number) return Foreign(number, message);
  if (found->decide) return found->decide(message, context);
  return WithName(found->code, {});
}

}  // namespace ocimaria::sql
