// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/OracleNumber.h"

#include <algorithm>
#include <charconv>

#include "oci/mariadb/OraError.h"

namespace ocimaria {
namespace {

constexpr int kMostDigits = 40;     // that a number holds and that its text shows
constexpr int kMostExponent = 126;  // decimal places in front of the point

// digits are decimal, the first one not zero; the value is 0.d1d2d3… x 10^point.
struct Decimal {
  bool negative = false;
  std::string digits;
  int point = 0;
};

int ParseExponent(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  int exponent = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), exponent);
  if (error != std::errc{} || end != text.data() + text.size() || text.empty()) throw OraError(1722);
  return exponent;
}

void Normalize(Decimal& number) {
  const auto first = number.digits.find_first_not_of('0');
  if (first == std::string::npos) {
    number = Decimal{};
    return;
  }
  number.digits.erase(0, first);
  number.point -= static_cast<int>(first);
  number.digits.erase(number.digits.find_last_not_of('0') + 1);
}

Decimal ParseDecimal(std::string_view text) {
  const auto begin = text.find_first_not_of(' ');
  if (begin == text.npos) throw OraError(1722);
  text = text.substr(begin, text.find_last_not_of(' ') - begin + 1);
  Decimal number;
  number.negative = text.front() == '-';
  if (text.front() == '-' || text.front() == '+') text.remove_prefix(1);
  const auto e = text.find_first_of("eE");
  if (e != text.npos) number.point = ParseExponent(text.substr(e + 1));
  const std::string_view mantissa = text.substr(0, e);
  const auto dot = std::min(mantissa.find('.'), mantissa.size());
  number.digits.append(mantissa.substr(0, dot));
  number.point += static_cast<int>(dot);
  if (dot < mantissa.size()) number.digits.append(mantissa.substr(dot + 1));
  const auto is_digit = [](char c) { return c >= '0' && c <= '9'; };
  if (number.digits.empty() || !std::ranges::all_of(number.digits, is_digit)) throw OraError(1722);
  Normalize(number);
  return number;
}

std::string WithExponent(const Decimal& number) {
  const int exponent = number.point - 1;
  std::string text = number.digits.substr(0, 1);
  text += ".";
  text += number.digits.size() > 1 ? number.digits.substr(1) : "0";
  text += exponent < 0 ? "E-" : "E+";
  const std::string places = std::to_string(std::abs(exponent));
  return text + (places.size() < 2 ? "0" : "") + places;
}

std::string Plain(const Decimal& number) {
  const int count = static_cast<int>(number.digits.size());
  if (number.point <= 0)
    return "." + std::string(static_cast<std::size_t>(-number.point), '0') + number.digits;
  if (number.point >= count)
    return number.digits + std::string(static_cast<std::size_t>(number.point - count), '0');
  return number.digits.substr(0, static_cast<std::size_t>(number.point)) + "." +
         number.digits.substr(static_cast<std::size_t>(number.point));
}

// Cut to the digits that the format holds. The next digit rounds.
void Round(Decimal& number, std::size_t keep) {
  if (number.digits.size() <= keep) return;
  const bool up = number.digits[keep] >= '5';
  number.digits.resize(keep);
  if (up) {
    auto at = number.digits.rbegin();
    while (at != number.digits.rend() && *at == '9') *at++ = '0';
    if (at == number.digits.rend()) {
      number.digits.insert(number.digits.begin(), '1');
      ++number.point;
    } else {
      ++*at;
    }
  }
  Normalize(number);
}

}  // namespace

std::string NumberText(std::string_view text) {
  Decimal number = ParseDecimal(text);
  if (number.digits.empty()) return "0";
  const int before = std::max(number.point, 0);
  const int after = std::max(static_cast<int>(number.digits.size()) - number.point, 0);
  const std::string digits = before + after <= kMostDigits ? Plain(number) : WithExponent(number);
  return (number.negative ? "-" : "") + digits;
}

std::string TextToOracleNumber(std::string_view text) {
  Decimal number = ParseDecimal(text);
  if (number.digits.empty()) return std::string(1, '\x80');
  if (number.point % 2 != 0) {  // digits pair up at the point
    number.digits.insert(number.digits.begin(), '0');
    ++number.point;
  }
  Round(number, kMostDigits);
  if (number.point % 2 != 0) {
    number.digits.insert(number.digits.begin(), '0');
    ++number.point;
  }
  if (number.point > kMostExponent) throw OraError(1426);
  if (number.point < -128) return std::string(1, '\x80');
  if (number.digits.size() % 2 != 0) number.digits += '0';
  const int exponent = number.point / 2 - 1;
  std::string bytes(1, static_cast<char>(number.negative ? 62 - exponent : 193 + exponent));
  for (std::size_t i = 0; i < number.digits.size(); i += 2) {
    const int pair = (number.digits[i] - '0') * 10 + (number.digits[i + 1] - '0');
    bytes += static_cast<char>(number.negative ? 101 - pair : pair + 1);
  }
  if (number.negative && bytes.size() < kOracleNumberBytes) bytes += static_cast<char>(102);
  return bytes;
}

std::string OracleNumberToText(const ub1* bytes, std::size_t length) {
  if (length == 0 || length > kOracleNumberBytes + 1) throw OraError(1722);
  if (bytes[0] == 0x80) return "0";
  Decimal number;
  number.negative = (bytes[0] & 0x80) == 0;
  const int exponent = number.negative ? 62 - bytes[0] : bytes[0] - 193;
  number.point = (exponent + 1) * 2;
  for (std::size_t i = 1; i < length && bytes[i] != 0; ++i) {
    if (number.negative && bytes[i] == 102) break;
    const int pair = number.negative ? 101 - bytes[i] : bytes[i] - 1;
    if (pair < 0 || pair > 99) throw OraError(1722);
    number.digits += static_cast<char>('0' + pair / 10);
    number.digits += static_cast<char>('0' + pair % 10);
  }
  if (number.digits.empty()) throw OraError(1722);
  Normalize(number);
  return (number.negative ? "-" : "") + Plain(number);
}

}  // namespace ocimaria
