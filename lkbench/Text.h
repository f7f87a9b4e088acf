// SPDX-License-Identifier: Apache-2.0
// Small text helpers: host strings to and from UTF-8, numbers and times for people, the nearest of some
// names. All functions are pure.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/LKString.h"

namespace lkbench {

LKString ToHost(std::string_view utf8);
std::string Upper(std::string_view text);  // ASCII letters only
constexpr bool IsControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }
// Line ends become ": " or a blank, a tab a blank, other control characters "?"; ends are trimmed.
std::string OneLine(std::string_view text);
// One line of foreign text for a message, cut between two characters of UTF-8 where it is longer.
std::string Excerpt(std::string_view text, size_t longest = 60);
std::string Grouped(std::uint64_t number);            // 1234567 -> 1,234,567
std::string Fixed(double value, int decimals);        // 1.5, 2 -> 1.50
std::string Short(double value);                      // the shortest text that reads back as the same value
std::string Milliseconds(std::uint64_t nanoseconds);  // in ms with three significant digits or more
std::string Plural(std::uint64_t count, const char* noun);  // 1 table, 2 tables
std::string Join(const std::vector<std::string>& parts, std::string_view separator);

// The candidate that differs least from `name`; empty when none is near (more than a third of it differs).
std::string Nearest(std::string_view name, const std::vector<std::string>& candidates);
// ": did you mean "x" or "y"?"; of no name nothing.
std::string Question(const std::vector<std::string>& likely);
// The same for one candidate; when nothing is near, those that have the name as a part ("a_x" or "x_b"), or
// nothing.
std::string DidYouMean(std::string_view name, const std::vector<std::string>& candidates);

// "90s", "500ms", "5m", "1.5h" or plain seconds. False when it is no such text, negative or not finite.
bool ParseDuration(std::string_view text, std::chrono::nanoseconds& duration);
// "256MiB", "2GiB", "1.5GiB" (also "256M" and "2G"): whole mebibytes, in bytes. False when it is no such
// text.
bool ParseSize(std::string_view text, std::uint64_t& bytes);
std::string SizeText(std::uint64_t bytes);  // of whole mebibytes: 1.5GiB, 100MiB
// Whole-text conversions without locale; false when anything is left over or out of range. A real is
// finite.
bool ParseInteger(std::string_view text, std::int64_t& value);
bool ParseReal(std::string_view text, double& value);

}  // namespace lkbench
