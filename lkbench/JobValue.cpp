// SPDX-License-Identifier: Apache-2.0
#include "lkbench/JobValue.h"

#include <algorithm>
#include <cmath>

#include "lkbench/Failure.h"
#include "lkbench/Text.h"

namespace lkbench {

std::string JobValue::Shown() const {
  if (const auto* text = std::get_if<std::string>(&value)) return '"' + Excerpt(*text) + '"';
  if (const auto* number = std::get_if<std::int64_t>(&value)) return std::to_string(*number);
  if (const auto* real = std::get_if<double>(&value)) return Short(*real);
  if (const auto* boolean = std::get_if<bool>(&value)) return *boolean ? "true" : "false";
  return std::holds_alternative<Table>(value) ? "a table" : "a list";
}

void JobValue::Refuse(const std::string& allowed) const {
  const std::string name = is_flag ? "" : key + ' ';
  throw UsageError(place + ": " + name + "cannot be " + Shown() + ": " + allowed);
}

std::int64_t JobValue::Integer(std::int64_t low, std::int64_t high) const {
  const auto* number = std::get_if<std::int64_t>(&value);
  std::int64_t parsed = 0;
  const auto* text = std::get_if<std::string>(&value);
  const bool is_integer = number != nullptr || (is_flag && text != nullptr && ParseInteger(*text, parsed));
  if (number != nullptr) parsed = *number;
  if (!is_integer || parsed < low || parsed > high)
    Refuse("a whole number from " + std::to_string(low) + " to " + std::to_string(high) + " is needed");
  return parsed;
}

double JobValue::Real(double low) const {
  double parsed = 0;
  const auto* text = std::get_if<std::string>(&value);
  bool is_real = is_flag && text != nullptr && ParseReal(*text, parsed);
  if (const auto* number = std::get_if<std::int64_t>(&value)) {
    parsed = static_cast<double>(*number);
    is_real = true;
  } else if (const auto* real = std::get_if<double>(&value)) {
    parsed = *real;
    is_real = true;
  }
  constexpr double kHighest = 1e9;
  if (!is_real || !(parsed >= low && parsed <= kHighest))
    Refuse("a number from " + Short(low) + " to 1000000000 is needed");
  return parsed;
}

double JobValue::Percent() const {
  const auto* text = std::get_if<std::string>(&value);
  double percent = 0;
  const bool is_share = text != nullptr && text->ends_with('%') &&
                        ParseReal(std::string_view(*text).substr(0, text->size() - 1), percent);
  if (!is_share || !(percent >= 0 && percent <= 1e6)) Refuse("a share in per cent is needed, such as 5%");
  return percent;
}

bool JobValue::Boolean() const {
  if (const auto* boolean = std::get_if<bool>(&value)) return *boolean;
  const auto* text = std::get_if<std::string>(&value);
  if (is_flag && text != nullptr && (*text == "true" || *text == "1")) return true;
  if (is_flag && text != nullptr && (*text == "false" || *text == "0")) return false;
  Refuse("true or false is needed");
}

const std::string& JobValue::Text() const {
  const auto* text = std::get_if<std::string>(&value);
  if (text == nullptr || text->empty()) Refuse("a text is needed");
  if (std::ranges::any_of(*text, IsControl)) Refuse("a text without control characters is needed");
  return *text;
}

std::chrono::nanoseconds JobValue::Duration() const {
  const std::chrono::nanoseconds parsed = DurationOrZero();
  if (parsed <= parsed.zero()) Refuse("a time above 0 is needed, such as 10s, 500ms, 5m or 1h");
  return parsed;
}

std::chrono::nanoseconds JobValue::DurationOrZero() const {
  std::chrono::nanoseconds parsed{};
  const auto* text = std::get_if<std::string>(&value);
  bool is_duration = text != nullptr && ParseDuration(*text, parsed);
  if (const auto* number = std::get_if<std::int64_t>(&value))
    is_duration = ParseDuration(std::to_string(*number), parsed);
  else if (const auto* real = std::get_if<double>(&value))
    is_duration = ParseDuration(Short(*real), parsed);
  if (!is_duration) Refuse("a time is needed, such as 10s, 500ms, 5m or 1h");
  return parsed;
}

std::uint64_t JobValue::Size(std::uint64_t low, std::uint64_t high) const {
  std::uint64_t parsed = 0;
  const auto* text = std::get_if<std::string>(&value);
  if (text == nullptr || !ParseSize(*text, parsed) || parsed < low || parsed > high)
    Refuse("a size from " + SizeText(low) + " to " + SizeText(high) + " is needed, such as 512MiB or 2GiB");
  return parsed;
}

size_t JobValue::OneOf(const std::vector<std::string>& names) const {
  const auto found = std::ranges::find(names, Text());
  if (found == names.end()) Refuse("one of " + Join(names, ", ") + " is needed" + DidYouMean(Text(), names));
  return static_cast<size_t>(found - names.begin());
}

}  // namespace lkbench
