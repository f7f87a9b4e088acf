// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <numeric>

namespace lkbench {

LKString ToHost(std::string_view utf8) { return LKString(utf8.data(), static_cast<int>(utf8.size())); }

std::string Upper(std::string_view text) {
  std::string upper(text);
  std::ranges::transform(upper, upper.begin(),
                         [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  return upper;
}

std::string OneLine(std::string_view text) {
  std::string line;
  for (const char c : text) {
    if (c != '\n' && c != '\r') {
      line += c == '\t' ? ' ' : IsControl(c) ? '?' : c;
    } else if (!line.empty() && line.back() != ' ') {
      line += line.back() == ':' ? " " : ": ";
    }
  }
  while (!line.empty() && (line.back() == ' ' || line.back() == ':')) line.pop_back();
  return line;
}

std::string Excerpt(std::string_view text, size_t longest) {
  const auto is_inside = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
  std::string line = OneLine(text);
  if (line.size() <= longest) return line;
  while (longest > 0 && is_inside(line[longest])) --longest;
  return line.substr(0, longest) + "…";
}

std::string Grouped(std::uint64_t number) {
  std::string digits = std::to_string(number);
  for (auto at = static_cast<std::ptrdiff_t>(digits.size()) - 3; at > 0; at -= 3)
    digits.insert(static_cast<size_t>(at), 1, ',');
  return digits;
}

std::string Fixed(double value, int decimals) {
  char buffer[400];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
  return std::string(buffer, end.ptr);
}

std::string Short(double value) {
  char buffer[64];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, end.ptr);
}

std::string Milliseconds(std::uint64_t nanoseconds) {
  const double milliseconds = static_cast<double>(nanoseconds) / 1e6;
  const int decimals = milliseconds < 10 ? 3 : milliseconds < 100 ? 2 : milliseconds < 1000 ? 1 : 0;
  return Fixed(milliseconds, decimals);
}

std::string Plural(std::uint64_t count, const char* noun) {
  return Grouped(count) + ' ' + noun + (count == 1 ? "" : "s");
}

std::string Join(const std::vector<std::string>& parts, std::string_view separator) {
  std::string joined;
  for (const std::string& part : parts) joined.append(joined.empty() ? "" : separator).append(part);
  return joined;
}

namespace {

size_t EditDistance(std::string_view left, std::string_view right) {
  std::vector<size_t> row(right.size() + 1);
  std::iota(row.begin(), row.end(), size_t{0});
  for (size_t i = 0; i < left.size(); ++i) {
    size_t diagonal = row[0]++;
    for (size_t j = 0; j < right.size(); ++j) {
      const size_t replaced = diagonal + (left[i] == right[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string Nearest(std::string_view name, const std::vector<std::string>& candidates) {
  const std::string wanted = Upper(name);
  std::string nearest;
  size_t best = std::max<size_t>(2, (name.size() + 2) / 3) + 1;
  for (const std::string& candidate : candidates) {
    const size_t distance = EditDistance(wanted, Upper(candidate));
    if (distance >= best || distance >= candidate.size()) continue;
    best = distance;
    nearest = candidate;
  }
  return nearest;
}

namespace {

// Whether `word` is one of the parts of a name, which - and _ divide: seed of run_seed and of --run-seed.
bool IsPart(std::string_view word, std::string_view name) {
  const auto is_end = [&](size_t at) { return at >= name.size() || name[at] == '_' || name[at] == '-'; };
  for (size_t at = name.find(word); at != std::string_view::npos; at = name.find(word, at + 1))
    if ((at == 0 || is_end(at - 1)) && is_end(at + word.size())) return true;
  return false;
}

}  // namespace

std::string Question(const std::vector<std::string>& likely) {
  return likely.empty() ? "" : ": did you mean \"" + Join(likely, "\" or \"") + "\"?";
}

std::string DidYouMean(std::string_view name, const std::vector<std::string>& candidates) {
  std::vector<std::string> likely = {Nearest(name, candidates)};
  const std::string_view word = name.substr(std::min(name.find_first_not_of('-'), name.size()));
  if (likely.front().empty()) {
    likely.clear();
    std::ranges::copy_if(candidates, std::back_inserter(likely),
                         [&](const auto& candidate) { return !word.empty() && IsPart(word, candidate); });
  }
  return Question(likely);
}

namespace {

template <class Number>
bool ParseWhole(std::string_view text, Number& value) {
  Number parsed{};
  const auto result = std::from_chars(text.data(), text.data() + text.size(), parsed);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return false;
  value = parsed;
  return true;
}

}  // namespace

bool ParseInteger(std::string_view text, std::int64_t& value) { return ParseWhole(text, value); }
bool ParseReal(std::string_view text, double& value) {
  double parsed = 0;
  if (!ParseWhole(text, parsed) || !std::isfinite(parsed)) return false;
  value = parsed;
  return true;
}

bool ParseDuration(std::string_view text, std::chrono::nanoseconds& duration) {
  struct Unit {
    std::string_view suffix;
    double nanoseconds;
  };
  static constexpr Unit kUnits[] = {{"ms", 1e6}, {"s", 1e9}, {"m", 60e9}, {"h", 3600e9}, {"", 1e9}};
  static constexpr double kLongest = 366.0 * 24 * 3600e9;
  const auto* unit =
      std::ranges::find_if(kUnits, [&](const Unit& each) { return text.ends_with(each.suffix); });
  double number = 0;
  if (!ParseReal(text.substr(0, text.size() - unit->suffix.size()), number)) return false;
  const double nanoseconds = number * unit->nanoseconds;
  if (!(nanoseconds >= 0 && nanoseconds <= kLongest)) return false;
  duration = std::chrono::nanoseconds(std::llround(nanoseconds));
  return true;
}

bool ParseSize(std::string_view text, std::uint64_t& bytes) {
  struct Unit {
    std::string_view suffix;
    double mebibytes;
  };
  static constexpr Unit kUnits[] = {{"MiB", 1}, {"GiB", 1024}, {"M", 1}, {"G", 1024}};
  static constexpr double kMost = 1024.0 * 1024 * 1024;  // a pebibyte
  const auto* unit =
      std::ranges::find_if(kUnits, [&](const Unit& each) { return text.ends_with(each.suffix); });
  double number = 0;
  if (unit == std::end(kUnits) || !ParseReal(text.substr(0, text.size() - unit->suffix.size()), number))
    return false;
  const double mebibytes = number * unit->mebibytes;
  if (!(mebibytes >= 0 && mebibytes <= kMost) || mebibytes != std::floor(mebibytes)) return false;
  bytes = static_cast<std::uint64_t>(mebibytes) << 20U;
  return true;
}

std::string SizeText(std::uint64_t bytes) {
  const std::uint64_t mebibytes = bytes >> 20U;
  constexpr std::uint64_t kHalfGibibyte = 512;
  if (mebibytes < 1024 || mebibytes % kHalfGibibyte != 0) return std::to_string(mebibytes) + "MiB";
  return Short(static_cast<double>(mebibytes) / 1024) + "GiB";
}

}  // namespace lkbench
