// SPDX-License-Identifier: Apache-2.0
// LKString::Format: printf-style, one typed argument per conversion specifier. The format is cut behind each
// specifier and every piece is rendered with its own argument by wxString::Format, which checks that the two
// belong together. Included by LKString.h.
//
// Any thread may format into a string of its own. Calls of one multi-argument instantiation take turns; calls
// of different ones do not wait for each other, except where one ends in the other: always from more
// arguments to fewer, so they cannot wait in a circle.
//
// A specifier that does not fit its argument is reported as an assertion, and the argument is rendered in the
// way that fits it (%d, %lld, %f or %s, with the flags, width and precision that are there). A specifier
// without an argument stays in the text as it is written.
#pragma once

#include <wx/regex.h>
#include <wx/string.h>
#include <wx/thread.h>

#include <type_traits>

#include "core/LKString.h"
#include "core/Utf8.h"

// How an argument is rendered by default: what a specifier is checked against.
enum class LKFormatClass { Int, Long, Double, Text };

// The piece as the formatter may be given it: at most one specifier, and that fits the class; I64 written as
// ll.
wxString LKFormatPiece(const wchar_t* piece, LKFormatClass eClass);

// kept: the brackets are written as if | meant "or", so | itself is a flag and a conversion character here,
// and z stands twice among the lengths. The splitter takes what this matches, "% d" behind a % included:
// which argument meets which piece of a host's format depends on it.
inline constexpr wchar_t kLKFormatSpecifier[] =
    L"%([-|+|#|0| ]){0,1}(\\d+)?(\\.\\d+)?(hh|h|l|ll|j|z|t|z|I64|i64){0,1}"
    L"[d|i|u|o|x|X|f|F|e|E|g|G|a|A|c|s|p|n]";

template <class T>
constexpr LKFormatClass LKFormatClassOf() {
  if constexpr (std::is_floating_point_v<T>) return LKFormatClass::Double;
  if constexpr (std::is_integral_v<T>)
    return sizeof(T) > sizeof(int) ? LKFormatClass::Long : LKFormatClass::Int;
  return LKFormatClass::Text;
}

// What the formatter is given for an argument. Narrow text is UTF-8; a null text is empty.
template <class T>
requires std::is_arithmetic_v<T> T LKFormatArgument(T value) { return value; }
inline wxString LKFormatArgument(const LKString& value) { return value.c_str(); }
inline wxString LKFormatArgument(const wchar_t* value) { return value ? value : L""; }
inline wxString LKFormatArgument(const char* value) { return value ? LKWideFromUtf8(value) : std::wstring(); }

template <class T>
class FormatHelper {
 public:
  // Appends the piece, rendered with the value.
  static void Format(const wchar_t* piece, T value, wxString& out) {
    out += wxString::Format(LKFormatPiece(piece, LKFormatClassOf<T>()), LKFormatArgument(value));
  }
};

// The end of every recursion: renders all the text that is left. kept: unlike the form below it takes no
// lock, searches no pattern and renders a text without a specifier too: the text behind the last one comes
// from here.
template <class T>
void LKString::Format(const wchar_t* format, T value) {
  wxString text;
  FormatHelper<T>::Format(format ? format : L"", value, text);
  if (m_nCount == 0) Empty();
  *this += text.wc_str();
}

template <class T, class... Rest>
requires(sizeof...(Rest) > 0) void LKString::Format(const wchar_t* format, T first, Rest... rest) {
  static wxCriticalSection gLKStringFormatCriticalSection(wxCRITSEC_DEFAULT);  // recursive
  const wxCriticalSectionLocker lock(gLKStringFormatCriticalSection);
  static wxRegEx reg(kLKFormatSpecifier, wxRE_ADVANCED);

  const wxString text(format ? format : L"");
  size_t nStart = 0;
  size_t nLength = 0;
  // kept: the string and its counter stay as they are; in a recursion the arguments and the text that are
  // left are dropped. Callers with a format of their own see their old text then.
  if (!reg.Matches(text) || !reg.GetMatch(&nStart, &nLength)) return;
  if (m_nCount++ == 0) Empty();
  const size_t nEnd = nStart + nLength;
  wxString piece;
  FormatHelper<T>::Format(text.substr(0, nEnd).wc_str(), first, piece);
  *this += piece.wc_str();
  Format(text.substr(nEnd).wc_str(), rest...);
  m_nCount = 0;  // kept: not a decrement, so the outermost call always leaves 0
}
