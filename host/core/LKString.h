// SPDX-License-Identifier: Apache-2.0
// LKString is the host's wide string: every SQL text, table name and message is built in it. A value type
// that owns its characters; not thread-safe, each thread works on its own copies. Format (LKStringFormat.h)
// renders one conversion specifier per argument into the string.
#pragma once

#include <string>

class LKString {
 public:
  LKString() = default;
  LKString(const LKString& other);
  LKString(LKString&& other) noexcept;
  LKString(const wchar_t* text);            // a null pointer is the empty string
  LKString(const char* text, int nLength);  // nLength bytes of UTF-8; a byte that is none becomes U+FFFD
  LKString& operator=(const LKString& other);
  LKString& operator=(LKString&& other) noexcept;
  LKString& operator=(const wchar_t* text);
  LKString& operator=(const char* text);

  LKString& operator+=(const LKString& other);
  LKString& operator+=(const char* text);
  LKString& operator+=(const wchar_t* text);
  LKString& Append(const wchar_t* text);

  void Empty();
  bool IsEmpty() const { return m_str.empty(); }
  int GetLength() const { return static_cast<int>(m_str.size()); }
  LKString Left(int nCount) const;  // the whole string when nCount is larger, nothing when it is below 1
  int CompareNoCase(const wchar_t* text) const;  // 0 when equal ignoring case

  // A writable buffer of at least nMinLength characters plus a terminator; valid until ReleaseBuffer.
  wchar_t* GetBuffer(int nMinLength);
  void ReleaseBuffer(int nNewLength = -1);  // -1: up to the first terminator

  const wchar_t* c_str() const { return m_str.c_str(); }
  operator const wchar_t*() const { return m_str.c_str(); }
  std::string ToChar() const;  // an 8-bit (UTF-8) copy, as OCI is given it

  // printf-style, one typed argument per specifier; see LKStringFormat.h.
  template <class T>
  void Format(const wchar_t* format, T value);
  template <class T, class... Rest>
  requires(sizeof...(Rest) > 0) void Format(const wchar_t* format, T first, Rest... rest);

  int m_nCount = 0;  // nesting counter of Format: 0 while no call is in progress

 private:
  friend bool operator<(LKString left, const LKString& right);
  friend bool operator==(const LKString& left, const LKString& right);

  bool Holds(const wchar_t* text) const;  // whether the text lies in this string's characters
  void TakePiece(std::wstring piece);     // appended, or moved in where there is no text

  std::wstring m_str;
};

LKString operator+(const LKString& left, const LKString& right);
// The ordering of string-keyed maps. kept: takes its left operand by value, as plug-ins are built against it.
bool operator<(LKString left, const LKString& right);
bool operator==(const LKString& left, const LKString& right);

#include "core/LKStringFormat.h"  // the bodies of Format
