// SPDX-License-Identifier: Apache-2.0
#include "core/LKString.h"

#include <algorithm>
#include <cwchar>
#include <cwctype>
#include <functional>
#include <utility>

#include "core/Utf8.h"

LKString::LKString(const LKString& other) : m_str(other.m_str) {}

LKString::LKString(LKString&& other) noexcept : m_str(std::move(other.m_str)) {}

LKString::LKString(const wchar_t* text) : m_str(text ? text : L"") {}

LKString::LKString(const char* text, int nLength) {
  if (text && nLength > 0) m_str = LKWideFromUtf8({text, static_cast<size_t>(nLength)});
}

// m_nCount stays: it counts the calls in progress on this string, not on the other one.
LKString& LKString::operator=(const LKString& other) {
  m_str = other.m_str;
  return *this;
}

LKString& LKString::operator=(LKString&& other) noexcept {
  m_str = std::move(other.m_str);
  return *this;
}

LKString& LKString::operator=(const wchar_t* text) {
  m_str = std::wstring(text ? text : L"");  // a copy first: text may point into this string
  return *this;
}

LKString& LKString::operator=(const char* text) {
  m_str = LKWideFromUtf8(text ? text : "");
  return *this;
}

LKString& LKString::operator+=(const LKString& other) {
  m_str += other.m_str;
  return *this;
}

LKString& LKString::operator+=(const char* text) {
  if (text) m_str += LKWideFromUtf8(text);
  return *this;
}

LKString& LKString::operator+=(const wchar_t* text) {
  if (text) m_str += text;
  return *this;
}

LKString& LKString::Append(const wchar_t* text) { return *this += text; }

void LKString::Empty() { m_str.clear(); }

LKString LKString::Left(int nCount) const {
  LKString left;
  if (nCount > 0) left.m_str = m_str.substr(0, static_cast<size_t>(nCount));
  return left;
}

int LKString::CompareNoCase(const wchar_t* text) const {
  const wchar_t* other = text ? text : L"";
  const wchar_t* own = m_str.c_str();
  for (;; ++own, ++other) {
    const auto left = std::towlower(static_cast<wint_t>(*own));
    const auto right = std::towlower(static_cast<wint_t>(*other));
    if (left != right) return left < right ? -1 : 1;
    if (*own == L'\0') return 0;
  }
}

wchar_t* LKString::GetBuffer(int nMinLength) {
  m_str.resize(std::max(m_str.size(), static_cast<size_t>(std::max(nMinLength, 0))));
  return m_str.data();
}

void LKString::ReleaseBuffer(int nNewLength) {
  m_str.resize(nNewLength < 0 ? std::wcslen(m_str.c_str()) : static_cast<size_t>(nNewLength));
}

bool LKString::Holds(const wchar_t* text) const {
  const std::less<const wchar_t*> isBefore;
  return text != nullptr && !isBefore(text, m_str.data()) && !isBefore(m_str.data() + m_str.size(), text);
}

void LKString::TakePiece(std::wstring piece) {
  if (m_str.empty())
    m_str = std::move(piece);
  else
    m_str += piece;
}

std::string LKString::ToChar() const { return LKUtf8FromWide(m_str); }

LKString operator+(const LKString& left, const LKString& right) {
  LKString sum(left);
  sum += right;
  return sum;
}

bool operator<(LKString left, const LKString& right) { return left.m_str < right.m_str; }

bool operator==(const LKString& left, const LKString& right) { return left.m_str == right.m_str; }
