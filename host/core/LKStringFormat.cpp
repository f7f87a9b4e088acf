// SPDX-License-Identifier: Apache-2.0
#include "core/LKStringFormat.h"

#include <wx/debug.h>

#include <array>
#include <string>
#include <string_view>

namespace {

// One specifier: %, flags, width and precision, length, conversion character.
struct Specifier {
  std::wstring_view layout;  // flags, width and precision
  std::wstring_view length;
  wchar_t conversion = L'\0';  // L'\0' when the text ends before it
  size_t size = 0;             // of all of it, % included
};

size_t SpanOf(std::wstring_view text, const wchar_t* characters) {
  return std::min(text.find_first_not_of(characters), text.size());
}

std::wstring_view LengthAt(std::wstring_view text) {
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

bool IsOneOf(wchar_t c, std::wstring_view characters) {
  return characters.find(c) != std::wstring_view::npos;
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

// The specifier without its length, which follows from the class.
std::wstring Spelled(const Specifier& specifier, LKFormatClass eClass, wchar_t conversion) {
  std::wstring text = L"%";
  text += specifier.layout;
  if (eClass == LKFormatClass::Long) text += L"ll";
  if (eClass == LKFormatClass::Int && conversion != L'c') text += specifier.length;
  return text + conversion;
}

std::wstring Fitted(Specifier specifier, LKFormatClass eClass) {
  constexpr std::array<wchar_t, 4> kDefaultConversion{L'd', L'd', L'f', L's'};
  if (Fits(specifier, eClass)) return Spelled(specifier, eClass, specifier.conversion);
  wxFAIL_MSG("format specifier doesn't match argument type");
  specifier.length = {};
  return Spelled(specifier, eClass, kDefaultConversion[static_cast<size_t>(eClass)]);
}

}  // namespace

wxString LKFormatPiece(const wchar_t* piece, LKFormatClass eClass) {
  std::wstring_view rest(piece);
  std::wstring out;
  bool bTaken = false;  // the argument has its specifier
  while (!rest.empty()) {
    const size_t nText = std::min(rest.find(L'%'), rest.size());
    out += rest.substr(0, nText);
    rest.remove_prefix(nText);
    if (rest.empty()) break;
    if (rest.substr(0, 2) == L"%%") {
      out += L"%%";
      rest.remove_prefix(2);
      continue;
    }
    const Specifier specifier = ReadSpecifier(rest);
    if (IsConversion(specifier.conversion) && !bTaken) {
      out += Fitted(specifier, eClass);
      bTaken = true;
      rest.remove_prefix(specifier.size);
    } else {
      out += L"%%";
      rest.remove_prefix(1);
    }
  }
  return out;
}
