// SPDX-License-Identifier: Apache-2.0
#include "core/LKStringFormat.h"

#include <wx/debug.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cwchar>
#include <span>
#include <vector>

namespace {

// One specifier: %, flags, width and precision, length, conversion character.
struct Specifier {
  std::wstring_view layout;  // flags, width and precision
  std::wstring_view length;
  wchar_t conversion = L'\0';  // L'\0' when the text ends before it
  size_t size = 0;             // of all of it, % included
};

enum : std::uint8_t { kFlag = 1, kWidth = 2, kLength = 4, kConversion = 8 };

// What an ASCII character may be in a specifier, as a sum.
constexpr std::array<std::uint8_t, 128> kRoles = [] {
  std::array<std::uint8_t, 128> roles{};
  const auto add = [&roles](std::string_view characters, std::uint8_t role) {
    for (const char c : characters) roles[static_cast<unsigned char>(c)] |= role;
  };
  add("-+#0 ", kFlag);
  add("0123456789.", kWidth);
  add("Iihljzt", kLength);
  add("diuoxXfFeEgGaAcspn", kConversion);
  return roles;
}();

constexpr bool IsA(wchar_t c, std::uint8_t role) {
  const auto code = static_cast<char32_t>(c);
  return code < kRoles.size() && (kRoles[code] & role) != 0;
}

size_t SpanOf(std::wstring_view text, std::uint8_t role) {
  size_t nSpan = 0;
  while (nSpan < text.size() && IsA(text[nSpan], role)) ++nSpan;
  return nSpan;
}

constexpr bool IsOneOf(wchar_t c, std::wstring_view characters) {
  for (const wchar_t other : characters)
    if (other == c) return true;
  return false;
}

constexpr std::wstring_view kWhole = L"diuoxX";
constexpr std::wstring_view kReal = L"fFeEgGaA";

std::wstring_view LengthAt(std::wstring_view text) {
  if (text.empty() || !IsA(text[0], kLength)) return {};
  static constexpr std::array<std::wstring_view, 9> kLengths{L"I64", L"i64", L"hh", L"ll", L"h",
                                                             L"l",   L"j",   L"z",  L"t"};
  for (const std::wstring_view length : kLengths)
    if (text.substr(0, length.size()) == length) return length;
  return {};
}

// REQUIRES: the text starts with %.
Specifier ReadSpecifier(std::wstring_view text) {
  Specifier read;
  const size_t nFlags = SpanOf(text.substr(1), kFlag);
  read.layout = text.substr(1, nFlags + SpanOf(text.substr(1 + nFlags), kWidth));
  size_t nAt = 1 + read.layout.size();
  read.length = LengthAt(text.substr(nAt));
  nAt += read.length.size();
  if (nAt < text.size()) read.conversion = text[nAt++];
  read.size = nAt;
  return read;
}

bool IsShort(std::wstring_view length) { return length.empty() || length[0] == L'h'; }

bool Fits(const Specifier& specifier, LKFormatClass eClass) {
  const wchar_t c = specifier.conversion;
  switch (eClass) {
    case LKFormatClass::Int:
      return c == L'c' || (IsOneOf(c, kWhole) && IsShort(specifier.length));
    case LKFormatClass::Long:
      return IsOneOf(c, kWhole) && !IsShort(specifier.length);
    case LKFormatClass::Double:
      return IsOneOf(c, kReal);
    case LKFormatClass::Text:
      return c == L's';
  }
  return false;
}

// The specifier as the C library may be given it: its length follows from the class.
std::wstring Spelled(const Specifier& specifier, LKFormatClass eClass) {
  std::wstring text = L"%";
  text += specifier.layout;
  if (eClass == LKFormatClass::Long) text += L"l";
  if (eClass == LKFormatClass::Text || specifier.conversion == L'c') text += L"l";
  if (eClass == LKFormatClass::Int && specifier.conversion != L'c') text += specifier.length;
  return text + specifier.conversion;
}

Specifier Fitted(Specifier specifier, LKFormatClass eClass) {
  constexpr std::array<wchar_t, 4> kDefaultConversion{L'd', L'd', L'f', L's'};
  if (Fits(specifier, eClass)) return specifier;
  wxFAIL_MSG("format specifier doesn't match argument type");
  specifier.length = {};
  specifier.conversion = kDefaultConversion[static_cast<size_t>(eClass)];
  return specifier;
}

constexpr size_t kWidest = size_t{1} << 20;  // characters; what is wider is left out

// By the C library, into a buffer that grows until the text fits.
template <class T>
void AppendPrinted(const std::wstring& format, T value, std::wstring& out) {
  std::array<wchar_t, 128> small;
  std::vector<wchar_t> large;
  std::span<wchar_t> buffer(small);
  for (size_t nNext = 4096; nNext <= kWidest; nNext *= 4) {
    const int nLength = std::swprintf(buffer.data(), buffer.size(), format.c_str(), value);
    if (nLength >= 0) {
      out.append(buffer.data(), static_cast<size_t>(nLength));
      return;
    }
    large.resize(nNext);
    buffer = large;
  }
}

// REQUIRES: at most 32 characters.
void AppendAscii(std::string_view text, std::wstring& out) {
  std::array<wchar_t, 32> wide;
  std::copy(text.begin(), text.end(), wide.begin());
  out.append(wide.data(), text.size());
}

void AppendDecimal(long value, std::wstring& out) {
  std::array<char, 24> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  AppendAscii({digits.data(), end}, out);
}

bool IsPlainDecimal(const Specifier& specifier) {
  return specifier.layout.empty() && (specifier.conversion == L'd' || specifier.conversion == L'i');
}

void AppendValue(const Specifier& specifier, LKFormatClass eClass, long value, std::wstring& out) {
  const auto nInt = static_cast<int>(value);
  if (IsPlainDecimal(specifier) && (eClass == LKFormatClass::Long || specifier.length.empty()))
    AppendDecimal(eClass == LKFormatClass::Long ? value : nInt, out);
  else if (eClass == LKFormatClass::Long)
    AppendPrinted(Spelled(specifier, eClass), value, out);
  else
    AppendPrinted(Spelled(specifier, eClass), nInt, out);
}

// As %f: six digits, rounded like the C library's.
void AppendFixed(double value, std::wstring& out) {
  std::array<char, 32> digits;
  const auto end =
      std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, 6).ptr;
  AppendAscii({digits.data(), end}, out);
}

// Short enough for AppendFixed, and a number.
bool IsModerate(double value) { return value > -1e18 && value < 1e18; }

void AppendValue(const Specifier& specifier, LKFormatClass eClass, double value, std::wstring& out) {
  if (specifier.layout.empty() && specifier.conversion == L'f' && IsModerate(value))
    return AppendFixed(value, out);
  AppendPrinted(Spelled(specifier, eClass), value, out);
}

void AppendValue(const Specifier& specifier, LKFormatClass eClass, std::wstring_view value,
                 std::wstring& out) {
  if (specifier.layout.empty())
    out += value;
  else
    AppendPrinted(Spelled(specifier, eClass), std::wstring(value).c_str(), out);
}

size_t RoomFor(std::wstring_view value) { return value.size(); }
template <class T>
size_t RoomFor(T) {
  return 32;  // more than most numbers take
}

template <class T>
void AppendPiece(std::wstring_view rest, LKFormatClass eClass, T value, std::wstring& out) {
  out.reserve(out.size() + rest.size() + RoomFor(value));
  bool bTaken = false;  // the argument has its specifier
  while (!rest.empty()) {
    const size_t nText = std::min(rest.find(L'%'), rest.size());
    out += rest.substr(0, nText);
    rest.remove_prefix(nText);
    if (rest.empty()) return;
    const Specifier specifier = ReadSpecifier(rest);
    if (rest.size() > 1 && rest[1] == L'%') {
      out += L'%';
      rest.remove_prefix(2);
    } else if (IsA(specifier.conversion, kConversion) && !bTaken) {
      AppendValue(Fitted(specifier, eClass), eClass, value, out);
      bTaken = true;
      rest.remove_prefix(specifier.size);
    } else {
      out += L'%';
      rest.remove_prefix(1);
    }
  }
}

}  // namespace

void LKAppendPiece(std::wstring_view piece, LKFormatClass eClass, long value, std::wstring& out) {
  AppendPiece(piece, eClass, value, out);
  // The character 0 ends the piece.
  if (static_cast<int>(value) == 0) out.resize(std::min(out.find(L'\0'), out.size()));
}

void LKAppendPiece(std::wstring_view piece, double value, std::wstring& out) {
  AppendPiece(piece, LKFormatClass::Double, value, out);
}

void LKAppendPiece(std::wstring_view piece, std::wstring_view value, std::wstring& out) {
  AppendPiece(piece, LKFormatClass::Text, value, out);
}

size_t LKFormatSplitter::EndOfSpecifier(wxRegEx& reg, std::wstring_view format) {
  for (const Answer& answer : m_Answers)
    if (answer.format == format) return answer.nEnd;
  Answer& answer = m_Answers[m_nOldest];
  m_nOldest = (m_nOldest + 1) % m_Answers.size();
  size_t nStart = 0;
  size_t nLength = 0;
  answer.format = format;
  answer.nEnd = reg.Matches(answer.format) && reg.GetMatch(&nStart, &nLength) ? nStart + nLength : kNone;
  return answer.nEnd;
}
