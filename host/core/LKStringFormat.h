// SPDX-License-Identifier: Apache-2.0
// LKString::Format: printf-style, one typed argument per conversion specifier. The format is cut behind each
// specifier and every piece is rendered with its own argument, checked that the two belong together. Included
// by LKString.h.
//
// Any thread may format into a string of its own. Calls of one multi-argument instantiation take turns; calls
// of different ones do not wait for each other, except where one ends in the other: always from more
// arguments to fewer, so they cannot wait in a circle.
//
// A specifier that does not fit its argument is reported as an assertion, and the argument is rendered in the
// way that fits it (%d, %lld, %f or %s, with the flags, width and precision that are there). A specifier
// without an argument stays in the text as it is written. Narrow text is UTF-8; a null text is empty.
#pragma once

#include <wx/regex.h>
#include <wx/string.h>
#include <wx/thread.h>

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "core/LKString.h"
#include "core/Utf8.h"

// How an argument is rendered by default: what a specifier is checked against.
enum class LKFormatClass { Int, Long, Double, Text };

// Appends the piece. The first specifier in it takes the argument; anything that is not in a format's
// language stays as it is written, "%%" is a percent sign.
void LKAppendPiece(std::wstring_view piece, LKFormatClass eClass, long value, std::wstring& out);
void LKAppendPiece(std::wstring_view piece, double value, std::wstring& out);
void LKAppendPiece(std::wstring_view piece, std::wstring_view value, std::wstring& out);

// The text that an argument stands for.
inline std::wstring_view LKFormatText(const LKString& value) { return value.c_str(); }
inline std::wstring_view LKFormatText(const wchar_t* value) { return value ? value : L""; }
inline std::wstring LKFormatText(const char* value) { return LKWideFromUtf8(value ? value : ""); }

// kept: the brackets are written as if | meant "or", so | itself is a flag and a conversion character here,
// and z stands twice among the lengths. The splitter takes what this matches, "% d" behind a % included:
// which argument meets which piece of a host's format depends on it.
inline constexpr wchar_t kLKFormatSpecifier[] =
    L"%([-|+|#|0| ]){0,1}(\\d+)?(\\.\\d+)?(hh|h|l|ll|j|z|t|z|I64|i64){0,1}"
    L"[d|i|u|o|x|X|f|F|e|E|g|G|a|A|c|s|p|n]";

// Where the first specifier of a format ends. Remembers the last few formats that it was asked for: an
// instantiation is called with the same ones over and over. Not thread-safe.
class LKFormatSplitter {
 public:
  static constexpr size_t kNone = std::wstring_view::npos;  // there is no specifier
  size_t EndOfSpecifier(wxRegEx& reg, std::wstring_view format);

 private:
  struct Answer {
    std::wstring format;
    size_t nEnd = kNone;
  };
  std::array<Answer, 4> m_Answers;  // of the empty format at first, which is right
  size_t m_nOldest = 0;
};

template <class T>
class FormatHelper {
 public:
  // Appends the piece, rendered with the value.
  static void Format(const wchar_t* piece, T value, wxString& out) {
    out += Rendered(piece ? piece : L"", value);
  }

  static std::wstring Rendered(std::wstring_view piece, const T& value) {
    std::wstring text;
    if constexpr (std::is_floating_point_v<T>)
      LKAppendPiece(piece, static_cast<double>(value), text);
    else if constexpr (std::is_integral_v<T>)
      LKAppendPiece(piece, sizeof(T) > sizeof(int) ? LKFormatClass::Long : LKFormatClass::Int,
                    static_cast<long>(value), text);
    else
      LKAppendPiece(piece, LKFormatText(value), text);
    return text;
  }
};

// The end of every recursion: renders all the text that is left. kept: unlike the form below it takes no
// lock, searches no pattern and renders a text without a specifier too: the text behind the last one comes
// from here.
template <class T>
void LKString::Format(const wchar_t* format, T value) {
  std::wstring text = FormatHelper<T>::Rendered(format ? format : L"", value);
  if (m_nCount == 0) Empty();
  TakePiece(std::move(text));
}

template <class T, class... Rest>
requires(sizeof...(Rest) > 0) void LKString::Format(const wchar_t* format, T first, Rest... rest) {
  if (Holds(format)) return Format(std::wstring(format).c_str(), std::move(first), std::move(rest)...);
  static wxCriticalSection gLKStringFormatCriticalSection(wxCRITSEC_DEFAULT);  // recursive
  const wxCriticalSectionLocker lock(gLKStringFormatCriticalSection);
  static wxRegEx reg(kLKFormatSpecifier, wxRE_ADVANCED);
  static LKFormatSplitter splitter;

  const std::wstring_view text(format ? format : L"");
  const size_t nEnd = splitter.EndOfSpecifier(reg, text);
  // kept: the string and its counter stay as they are; in a recursion the arguments and the text that are
  // left are dropped. Callers with a format of their own see their old text then.
  if (nEnd == LKFormatSplitter::kNone) return;
  if (m_nCount++ == 0) Empty();
  TakePiece(FormatHelper<T>::Rendered(text.substr(0, nEnd), first));
  Format(format + nEnd, std::move(rest)...);
  m_nCount = 0;  // kept: not a decrement, so the outermost call always leaves 0
}
