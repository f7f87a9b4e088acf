// SPDX-License-Identifier: Apache-2.0
#include "core/LKStringFormat.h"

#include <wx/debug.h>

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

// By a loop: lists as short as these are searched sooner than a call of the C library is made.
constexpr bool IsOneOf(wchar_t c, std::wstring_view characters) {
  for (const wchar_t other : characters)
    if (other == c) return true;
  return false;
}

size_t SpanOf(std::wstring_view text, std::wstring_view characters) {
  size_t nSpan = 0;
  while (nSpan < text.size() && IsOneOf(text[nSpan], characters)) ++nSpan;
  return nSpan;
}

std::wstring_view LengthAt(std::wstring_view text) {
  if (text.empty() || !IsOneOf(text[0], L"Iihljzt")) return {};
  constexpr std::array<std::wstring_view, 9> kLengths{L"I64", L"i64", L"hh", L"ll", L"h",
                                                      L"l",   L"j",   L"z",  L"t"};
  for (const std::wstring_view length : kLengths)
    if (text.substr(0, length.size()) == length) return length;
  return {};
}

// REQUIRES: the text starts with %.
Specifier ReadSpecifier(std::wstring_view text) {
  Specifier read;
  const size_t nFlags = SpanOf(text.substr(1), L"-+#0 ");
  read.layout = text.substr(1, nFlags + SpanOf(text.substr(1 + nFlags), L"0123456789."));
  size_t nAt = 1 + read.layout.size();
  read.length = LengthAt(text.substr(nAt));
  nAt += read.length.size();
  if (nAt < text.size()) read.conversion = text[nAt++];
  read.size = nAt;
  return read;
}

bool IsConversion(wchar_t c) { return c != L'\0' && IsOneOf(c, L"diuoxXfFeEgGaAcspn"); }

bool IsShort(std::wstring_view length) { return length.empty() || length[0] == L'h'; }

bool Fits(const Specifier& specifier, LKFormatClass eClass) {
  const wchar_t c = specifier.conversion;
  switch (eClass) {
    case LKFormatClass::Int:
      return c == L'c' || (IsOneOf(c, L"diuoxX") && IsShort(specifier.length));
    case LKFormatClass::Long:
      return IsOneOf(c, L"diuoxX") && !IsShort(specifier.length);
    case LKFormatClass::Double:
      return IsOneOf(c, L"fFeEgGaA");
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

void Append(std::wstring_view text, wxString& out) { out.append(text.data(), text.size()); }

constexpr size_t kWidest = size_t{1} << 20;  // characters; what is wider is left out

// By the C library, into a buffer that grows until the text fits.
template <class T>
void AppendPrinted(const std::wstring& format, T value, wxString& out) {
  std::array<wchar_t, 128> small;
  std::vector<wchar_t> large;
  std::span<wchar_t> buffer(small);
  for (size_t nNext = 4096; nNext <= kWidest; nNext *= 4) {
    const int nLength = std::swprintf(buffer.data(), buffer.size(), format.c_str(), value);
    if (nLength >= 0) return Append({buffer.data(), static_cast<size_t>(nLength)}, out);
    large.resize(nNext);
    buffer = large;
  }
}

// REQUIRES: at most 32 characters.
void AppendAscii(std::string_view text, wxString& out) {
  std::array<wchar_t, 32> wide;
  std::copy(text.begin(), text.end(), wide.begin());
  Append({wide.data(), text.size()}, out);
}

void AppendDecimal(long value, wxString& out) {
  std::array<char, 24> digits;
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
  AppendAscii({digits.data(), end}, out);
}

bool IsPlainDecimal(const Specifier& specifier) {
  return specifier.layout.empty() && (specifier.conversion == L'd' || specifier.conversion == L'i');
}

void AppendValue(const Specifier& specifier, LKFormatClass eClass, long value, wxString& out) {
  const auto nInt = static_cast<int>(value);
  if (IsPlainDecimal(specifier) && (eClass == LKFormatClass::Long || specifier.length.empty()))
    AppendDecimal(eClass == LKFormatClass::Long ? value : nInt, out);
  else if (eClass == LKFormatClass::Long)
    AppendPrinted(Spelled(specifier, eClass), value, out);
  else
    AppendPrinted(Spelled(specifier, eClass), nInt, out);
}

// As %f: six digits, rounded like the C library's.
void AppendFixed(double value, wxString& out) {
  std::array<char, 32> digits;
  const auto end =
      std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, 6).ptr;
  AppendAscii({digits.data(), end}, out);
}

// Short enough for AppendFixed, and a number.
bool IsModerate(double value) { return value > -1e18 && value < 1e18; }

void AppendValue(const Specifier& specifier, LKFormatClass eClass, double value, wxString& out) {
  if (specifier.layout.empty() && specifier.conversion == L'f' && IsModerate(value))
    return AppendFixed(value, out);
  AppendPrinted(Spelled(specifier, eClass), value, out);
}

void AppendValue(const Specifier& specifier, LKFormatClass eClass, std::wstring_view value, wxString& out) {
  if (specifier.layout.empty()) return Append(value, out);
  AppendPrinted(Spelled(specifier, eClass), std::wstring(value).c_str(), out);
}

size_t RoomFor(std::wstring_view value) { return value.size(); }
template <class T>
size_t RoomFor(T) {
  return 32;  // more than most numbers take
}

template <class T>
void AppendPiece(std::wstring_view rest, LKFormatClass eClass, T value, wxString& out) {
  out.reserve(out.size() + rest.size() + RoomFor(value));
  bool bTaken = false;  // the argument has its specifier
  while (!rest.empty()) {
    const size_t nText = std::min(rest.find(L'%'), rest.size());
    Append(rest.substr(0, nText), out);
    rest.remove_prefix(nText);
    if (rest.empty()) return;
    const Specifier specifier = ReadSpecifier(rest);
    if (rest.substr(0, 2) == L"%%") {
      Append(L"%", out);
      rest.remove_prefix(2);
    } else if (IsConversion(specifier.conversion) && !bTaken) {
      AppendValue(Fitted(specifier, eClass), eClass, value, out);
      bTaken = true;
      rest.remove_prefix(specifier.size);
    } else {
      Append(L"%", out);
      rest.remove_prefix(1);
    }
  }
}

}  // namespace

void LKAppendPiece(std::wstring_view piece, LKFormatClass eClass, long value, wxString& out) {
  AppendPiece(piece, eClass, value, out);
}

void LKAppendPiece(std::wstring_view piece, double value, wxString& out) {
  AppendPiece(piece, LKFormatClass::Double, value, out);
}

void LKAppendPiece(std::wstring_view piece, std::wstring_view value, wxString& out) {
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
