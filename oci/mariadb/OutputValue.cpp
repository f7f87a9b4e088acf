// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/OutputValue.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>

#include "oci/mariadb/Dates.h"
#include "oci/mariadb/OraError.h"
#include "oci/mariadb/OracleNumber.h"

namespace ocimaria {
namespace {

template <class... Cases>
struct Match : Cases... {
  using Cases::operator()...;
};
template <class... Cases>
Match(Cases...) -> Match<Cases...>;  // implied in C++20, but not by every compiler

std::string DoubleText(double value) {
  char text[400];
  const auto [end, error] = std::to_chars(text, text + sizeof text, value);
  return NumberText({text, static_cast<std::size_t>(end - text)});
}

std::string TextOf(const FetchedValue& value) {
  return std::visit(
      Match{[](std::monostate) { return std::string(); }, [](double number) { return DoubleText(number); },
            [](const DecimalValue& number) { return NumberText(number.text); },
            [](const DateValue& date) { return ToDateText(date.time, date.fraction_digits); },
            [](std::string_view text) { return std::string(text); },
            [](auto integer) { return std::to_string(integer); }},
      value);
}

double ParseDouble(std::string_view text) {
  const std::string plain = NumberText(text);  // refuses what is no number
  return std::strtod(plain.c_str(), nullptr);
}

double DoubleOf(const FetchedValue& value) {
  return std::visit(
      Match{[](const DecimalValue& number) { return ParseDouble(number.text); },
            [](std::string_view text) { return ParseDouble(text); },
            [](const DateValue&) -> double {
              throw OraError(932, {"NUMBER", "DATE"});
            },
            [](std::monostate) { return 0.0; }, [](auto number) { return static_cast<double>(number); }},
      value);
}

// A whole number of the wanted width, the fraction rounded. Throws OraError 1455 when it does not fit.
template <class Integer>
Integer IntegerOf(const FetchedValue& value) {
  if (const auto* whole = std::get_if<std::int64_t>(&value)) {
    if (!std::in_range<Integer>(*whole)) throw OraError(1455);
    return static_cast<Integer>(*whole);
  }
  if (const auto* whole = std::get_if<std::uint64_t>(&value)) {
    if (!std::in_range<Integer>(*whole)) throw OraError(1455);
    return static_cast<Integer>(*whole);
  }
  const long double number = std::round(static_cast<long double>(DoubleOf(value)));
  if (number < static_cast<long double>(std::numeric_limits<Integer>::min()) ||
      number > static_cast<long double>(std::numeric_limits<Integer>::max()))
    throw OraError(1455);
  return static_cast<Integer>(number);
}

template <class T>
std::size_t Put(const OutputElement& to, T value) {
  std::memcpy(to.value, &value, sizeof value);
  return sizeof value;
}

std::size_t PutSigned(const OutputElement& to, const FetchedValue& value) {
  switch (to.size) {
    case 1:
      return Put(to, IntegerOf<sb1>(value));
    case 2:
      return Put(to, IntegerOf<sb2>(value));
    case 4:
      return Put(to, IntegerOf<sb4>(value));
    default:
      return Put(to, IntegerOf<sb8>(value));
  }
}

std::size_t PutUnsigned(const OutputElement& to, const FetchedValue& value) {
  switch (to.size) {
    case 1:
      return Put(to, IntegerOf<ub1>(value));
    case 2:
      return Put(to, IntegerOf<ub2>(value));
    case 4:
      return Put(to, IntegerOf<ub4>(value));
    default:
      return Put(to, IntegerOf<ub8>(value));
  }
}

std::size_t PutReal(const OutputElement& to, const FetchedValue& value) {
  const double number = DoubleOf(value);
  return to.size == sizeof(float) ? Put(to, static_cast<float>(number)) : Put(to, number);
}

std::size_t PutDate(const OutputElement& to, const FetchedValue& value) {
  MYSQL_TIME time;
  if (const auto* date = std::get_if<DateValue>(&value))
    time = date->time;
  else if (const auto* text = std::get_if<std::string_view>(&value))
    time = FromDateText(*text);
  else
    throw OraError(932, {"DATE", "NUMBER"});
  ToOracleDate(time, reinterpret_cast<ub1*>(to.value));
  return kOracleDateBytes;
}

std::size_t PutNumber(const OutputElement& to, const FetchedValue& value) {
  if (std::holds_alternative<DateValue>(value)) throw OraError(932, {"NUMBER", "DATE"});
  const std::string bytes = TextToOracleNumber(TextOf(value));
  char* at = to.value;
  if (to.type == SQLT_VNU) *at++ = static_cast<char>(bytes.size());
  std::memcpy(at, bytes.data(), bytes.size());  // NOLINT(bugprone-not-null-terminated-result): not a text
  return static_cast<std::size_t>(at - to.value) + bytes.size();
}

// Gives the length of the whole text; more than the buffer takes means that it was cut.
std::size_t PutText(const OutputElement& to, std::string_view text) {
  const bool zero_ended = to.type == SQLT_STR || to.type == SQLT_AVC;
  const std::size_t room = zero_ended ? to.size - 1 : to.size;
  const std::size_t length = std::min(room, text.size());
  std::memcpy(to.value, text.data(), length);
  if (to.type == SQLT_AFC) std::memset(to.value + length, ' ', room - length);
  if (zero_ended) to.value[length] = 0;
  return text.size();
}

std::size_t Room(const OutputElement& to) {
  return to.type == SQLT_STR || to.type == SQLT_AVC ? to.size - 1 : to.size;
}

ub2 Narrow(std::size_t length) {
  return static_cast<ub2>(std::min<std::size_t>(length, std::numeric_limits<ub2>::max()));
}

int Report(const OutputElement& to, std::size_t length, bool is_text) {
  const bool cut = is_text && length > Room(to);
  if (to.length) *to.length = Narrow(cut ? Room(to) : length);
  if (to.indicator) {
    constexpr std::size_t kMost = std::numeric_limits<sb2>::max();
    *to.indicator = static_cast<sb2>(!cut ? 0 : length > kMost ? -2 : static_cast<sb2>(length));
  }
  if (to.code) *to.code = cut ? 1406 : 0;
  return cut && !to.code ? 1406 : 0;
}

int ReportNull(const OutputElement& to) {
  if (to.length) *to.length = 0;
  if (to.indicator) *to.indicator = OCI_IND_NULL;
  if (to.code) *to.code = 1405;
  return to.indicator || to.code ? 0 : 1405;
}

}  // namespace

bool CanDefine(ub2 type, std::size_t size) {
  switch (type) {
    case SQLT_INT:
    case SQLT_UIN:
      return size == 1 || size == 2 || size == 4 || size == 8;
    case SQLT_FLT:
      return size == 4 || size == 8;
    case SQLT_BFLOAT:
      return size == 4;
    case SQLT_BDOUBLE:
      return size == 8;
    case SQLT_DAT:
      return size == kOracleDateBytes;
    case SQLT_NUM:
      return size >= kOracleNumberBytes;
    case SQLT_VNU:
      return size >= kOracleNumberBytes + 1;
    case SQLT_CHR:
    case SQLT_STR:
    case SQLT_LNG:
    case SQLT_BIN:
    case SQLT_LBI:
    case SQLT_AFC:
    case SQLT_AVC:
      return size >= 1;
    default:
      return false;
  }
}

int WriteValue(const OutputElement& to, const FetchedValue& value) {
  if (std::holds_alternative<std::monostate>(value)) return ReportNull(to);
  switch (to.type) {
    case SQLT_INT:
      return Report(to, PutSigned(to, value), false);
    case SQLT_UIN:
      return Report(to, PutUnsigned(to, value), false);
    case SQLT_FLT:
    case SQLT_BFLOAT:
    case SQLT_BDOUBLE:
      return Report(to, PutReal(to, value), false);
    case SQLT_DAT:
      return Report(to, PutDate(to, value), false);
    case SQLT_NUM:
    case SQLT_VNU:
      return Report(to, PutNumber(to, value), false);
    default:
      if (const auto* text = std::get_if<std::string_view>(&value))
        return Report(to, PutText(to, *text), true);
      return Report(to, PutText(to, TextOf(value)), true);
  }
}

}  // namespace ocimaria
