// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/DateElement.h"

#include <algorithm>
#include <array>

#include "oci/mariadb/OraError.h"
#include "oci/mariadb/sql/TextCase.h"

namespace ocimaria::sql {
namespace {

struct Spelling {
  std::string_view word;
  DatePart part;
  int width;
};

// A longer word stands before every word that it begins with.
constexpr auto kSpellings = std::to_array<Spelling>({
    {"SYYYY", DatePart::kYear, 4},     {"YYYY", DatePart::kYear, 4},     {"YYY", DatePart::kYear, 3},
    {"YY", DatePart::kYear, 2},        {"Y", DatePart::kYear, 1},        {"RRRR", DatePart::kRoundYear, 4},
    {"RR", DatePart::kRoundYear, 2},   {"RM", DatePart::kMonthRoman, 0}, {"MONTH", DatePart::kMonthName, 0},
    {"MON", DatePart::kMonthName, 0},  {"MM", DatePart::kMonth, 2},      {"MI", DatePart::kMinute, 2},
    {"DDD", DatePart::kDayOfYear, 3},  {"DD", DatePart::kDay, 2},        {"DAY", DatePart::kWeekdayName, 0},
    {"DY", DatePart::kWeekdayName, 0}, {"J", DatePart::kJulian, 7},      {"HH24", DatePart::kHour24, 2},
    {"HH12", DatePart::kHour12, 2},    {"HH", DatePart::kHour12, 2},     {"SSSSS", DatePart::kSecondOfDay, 5},
    {"SS", DatePart::kSecond, 2},      {"FM", DatePart::kFill, 0},       {"FX", DatePart::kExact, 0},
    {"FF1", DatePart::kFraction, 1},   {"FF2", DatePart::kFraction, 2},  {"FF3", DatePart::kFraction, 3},
    {"FF4", DatePart::kFraction, 4},   {"FF5", DatePart::kFraction, 5},  {"FF6", DatePart::kFraction, 6},
    {"FF7", DatePart::kFraction, 7},   {"FF8", DatePart::kFraction, 8},  {"FF9", DatePart::kFraction, 9},
    {"FF", DatePart::kFraction, 9},    {"X", DatePart::kRadix, 0},       {"A.M.", DatePart::kMeridian, 0},
    {"P.M.", DatePart::kMeridian, 0},  {"AM", DatePart::kMeridian, 0},   {"PM", DatePart::kMeridian, 0},
    {"TZH", DatePart::kZone, 0},       {"TZM", DatePart::kZone, 0},      {"TZR", DatePart::kZone, 0},
    {"TZD", DatePart::kZone, 0},
});

// Formats by which a date may be written but not read.
constexpr auto kWriteOnly = std::to_array<std::string_view>(
    {"CC", "SCC", "Q", "WW", "W", "IW", "IYYY", "IYY", "IY", "I", "YEAR", "SYEAR", "D"});

std::size_t WordLength(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::find_if_not(text, IsLetter) - text.begin());
}

const Spelling* FindSpelling(std::string_view mask) {
  const char first = ToUpper(mask.front());
  const auto found = std::ranges::find_if(kSpellings, [&](const Spelling& spelling) {
    return spelling.word.front() == first && EqualsUpper(mask.substr(0, spelling.word.size()), spelling.word);
  });
  return found == kSpellings.end() ? nullptr : &*found;
}

bool IsWriteOnly(std::string_view word) {
  return std::ranges::any_of(kWriteOnly, [&](std::string_view known) { return EqualsUpper(word, known); });
}

DateElement ParseElement(std::string_view mask) {
  if (mask.front() == '"') {
    const auto closing = mask.find('"', 1);
    if (closing == mask.npos) throw OraError(1821);
    return {DatePart::kQuoted, 0, std::string(mask.substr(0, closing + 1))};
  }
  if (IsWriteOnly(mask.substr(0, WordLength(mask)))) throw OraError(1820);
  if (const Spelling* spelling = FindSpelling(mask)) {
    return {spelling->part, spelling->width, std::string(mask.substr(0, spelling->word.size()))};
  }
  if (IsLetter(mask.front()) || IsDigit(mask.front())) throw OraError(1821);
  return {DatePart::kPunctuation, 0, std::string(mask.substr(0, 1))};
}

// Parts of one group give the same thing, so that only one of them may stand in a mask.
int GroupOf(DatePart part) {
  switch (part) {
    case DatePart::kYear:
    case DatePart::kRoundYear:
      return 1812;
    case DatePart::kMonth:
    case DatePart::kMonthName:
    case DatePart::kMonthRoman:
      return 1816;
    case DatePart::kHour12:
    case DatePart::kHour24:
      return 1813;
    default:
      return 1810;
  }
}

bool MayRepeat(DatePart part) {
  return part == DatePart::kPunctuation || part == DatePart::kQuoted || part == DatePart::kFill ||
         part == DatePart::kExact || part == DatePart::kZone;
}

void CheckRepeats(const std::vector<DateElement>& elements) {
  for (auto second = elements.begin(); second != elements.end(); ++second) {
    if (MayRepeat(second->part)) continue;
    for (auto first = elements.begin(); first != second; ++first) {
      if (first->part == second->part) throw OraError(1810);
      const int group = GroupOf(first->part);
      if (group != 1810 && group == GroupOf(second->part)) throw OraError(group);
    }
  }
}

bool Has(const std::vector<DateElement>& elements, DatePart part) {
  return std::ranges::find(elements, part, &DateElement::part) != elements.end();
}

}  // namespace

std::vector<DateElement> ParseDateMask(std::string_view mask) {
  std::vector<DateElement> elements;
  while (!mask.empty()) {
    elements.push_back(ParseElement(mask));
    mask.remove_prefix(elements.back().text.size());
  }
  CheckRepeats(elements);
  if (Has(elements, DatePart::kHour24) && Has(elements, DatePart::kMeridian)) throw OraError(1818);
  return elements;
}

}  // namespace ocimaria::sql
