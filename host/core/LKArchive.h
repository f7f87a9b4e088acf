// SPDX-License-Identifier: Apache-2.0
// CLKArchive carries named values between an object's fields and a text (XML or JSON). One object serialises
// both ways: a storing archive collects what it is given, a loading archive writes into the references.
// Not thread-safe.
#pragma once

#include <map>

#include "core/LKString.h"
#include "core/LKTypes.h"
#include "core/RestObject.h"

class CLKArchive {
 public:
  explicit CLKArchive(SerializeMode eMode);                 // storing
  CLKArchive(SerializeMode eMode, const LKString& szText);  // loading
  bool IsStoring() const { return m_bStoring; }
  bool IsGood() const { return m_bGood; }  // false when the text could not be read

  void Exchange(const wchar_t* szName, int& nValue);
  void Exchange(const wchar_t* szName, __int64& nValue);
  void Exchange(const wchar_t* szName, double& fValue);
  void Exchange(const wchar_t* szName, LKString& szValue);
  LKString GetText() const;

 private:
  SerializeMode m_eMode;
  bool m_bStoring;
  bool m_bGood = true;
  std::map<LKString, LKString> m_Values;
};
