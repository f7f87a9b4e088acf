// SPDX-License-Identifier: Apache-2.0
// Any text as a format. Its first character names the arguments, which are of the types that transactions
// pass. A format stands in the source, never in data: one that asks for a field wider than a screenful is
// left out.
#include <cstdint>
#include <regex>
#include <string>

#include "Require.h"
#include "core/Assert.h"
#include "core/LKString.h"
#include "core/Utf8.h"

namespace fuzz {
namespace {

constexpr std::size_t kMostFormat = 300;
const std::wstring kOld = L"old";

int g_assertions = 0;

// The splitter's own pattern for another engine.
const std::wregex& Pattern() {
  static const std::wregex pattern(kLKFormatSpecifier);
  return pattern;
}

struct Outcome {
  std::wstring text;
  int assertions;
  int count;
  bool operator==(const Outcome&) const = default;
};

// What one call leaves in a string that held `before`.
template <class... Arguments>
Outcome Format(const std::wstring& before, const std::wstring& format, const Arguments&... arguments) {
  LKString target(before.c_str());
  g_assertions = 0;
  target.Format(format.c_str(), arguments...);
  return {target.c_str(), g_assertions, target.m_nCount};
}

// The single form: what the format says, once; its first specifier takes the argument.
template <class T>
std::wstring Expected(const std::wstring&, const std::wstring& format, const T& value) {
  return Format(L"", format, value).text;
}

// Several arguments: each piece with its own, up to where no specifier is left.
template <class T, class... Rest>
requires(sizeof...(Rest) > 0) std::wstring
    Expected(const std::wstring& without, const std::wstring& format, const T& first, const Rest&... rest) {
  std::wsmatch match;
  if (!std::regex_search(format, match, Pattern())) return without;
  const auto end = static_cast<std::size_t>(match.position() + match.length());
  return Format(L"", format.substr(0, end), first).text + Expected(L"", format.substr(end), rest...);
}

template <class... Arguments>
void RequireFormat(const std::wstring& format, const Arguments&... arguments) {
  const Outcome outcome = Format(kOld, format, arguments...);
  Require(outcome.count == 0, "no call is in progress when the outermost one is over");
  Require(outcome.assertions <= static_cast<int>(sizeof...(arguments)), "an argument is reported once");
  Require(outcome == Format(kOld, format, arguments...), "formatting gives the same every time");
  Require(outcome.text == Expected(kOld, format, arguments...),
          "each piece is rendered with its own argument");
  if (format.find(L'%') != format.npos) return;
  Require(outcome.text == (sizeof...(arguments) == 1 ? format : kOld),
          "text without a specifier stands as it is");
  Require(outcome.assertions == 0, "text without a specifier is no mistake");
}

void RequireAppended(const std::wstring& format) {
  LKString target(kOld.c_str());
  target.m_nCount = 1;  // as in a call in progress
  target.Format(format.c_str(), 5);
  Require(std::wstring(target.c_str()) == kOld + Format(L"", format, 5).text,
          "a call in progress is appended to");
  Require(target.m_nCount == 1, "one argument counts no call");
}

bool IsTooWide(const std::wstring& format) {
  static const std::wregex wide(L"[1-9]\\d{3}|\\d{5}");
  return format.size() > kMostFormat || std::regex_search(format, wide);
}

void RequireFormatOf(wchar_t arguments, const std::wstring& format) {
  const LKString name(L"LK_REP_TABLE1");
  const char* const narrow = "gr\xC3\xBC\xC3\x9F%d";
  switch (arguments) {
    case L'i':
      return RequireFormat(format, -42);
    case L'l':
      return RequireFormat(format, 5000000000L);
    case L'd':
      return RequireFormat(format, -1.5e300);
    case L'b':
      return RequireFormat(format, true);
    case L'c':
      return RequireFormat(format, narrow);
    case L's':
      return RequireFormat(format, name);
    case L'2':
      return RequireFormat(format, 1, -2);
    case L'3':
      return RequireFormat(format, narrow, 1, false);
    case L'4':
      return RequireFormat(format, name, name, -3L, 4);
    case L'5':
      return RequireFormat(format, name, 0.1);
    default:
      return RequireAppended(format);
  }
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  LKSetAssertSink([](const LKAssertion&) { ++fuzz::g_assertions; });
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::wstring text = LKWideFromUtf8({reinterpret_cast<const char*>(data), size});
  const std::wstring input = text.substr(0, text.find(L'\0'));
  if (input.empty() || fuzz::IsTooWide(input)) return -1;
  fuzz::RequireFormatOf(input.front(), input.substr(1));
  return 0;
}
