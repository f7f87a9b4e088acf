// SPDX-License-Identifier: Apache-2.0
// CLKArchive carries named values between an object's fields and a text (XML or JSON). One object serialises
// both ways: a storing archive collects what it is given, a loading archive writes into the references; a
// name that its text lacks leaves the field as it is. Not thread-safe.
#pragma once

#include "core/LKString.h"
#include "core/LKTypes.h"
#include "core/PropertyText.h"
#include "core/RestObject.h"

class CLKArchive {
 public:
  explicit CLKArchive(SerializeMode eMode);                 // storing
  CLKArchive(SerializeMode eMode, const LKString& szText);  // loading
  bool IsStoring() const { return m_bStoring; }
  bool IsGood() const { return m_bGood; }  // false: the text, or a value of it, could not be read

  void Exchange(const wchar_t* szName, int& nValue);
  void Exchange(const wchar_t* szName, __int64& nValue);
  void Exchange(const wchar_t* szName, double& fValue);
  void Exchange(const wchar_t* szName, LKString& szValue);
  LKString GetText() const;

 private:
  void Exchange(const REST_PROPERTY_ENTRY& entry);

  SerializeMode m_eMode;
  bool m_bStoring;
  LKPropertyList m_Values;
  bool m_bGood = true;
};
