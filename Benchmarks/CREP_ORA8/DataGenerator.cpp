// SPDX-License-Identifier: Apache-2.0
#include "StdAfx.h"

#include "DataGenerator.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <string>

#include "core/LKDateTime.h"

namespace {

const lkDateTime dtStartDate(1950, 1, 1, 0, 0, 0);
const lkDateTime dtEndDate(2500, 12, 30, 12, 12, 12);

constexpr double kMaxInt = 2147483647.0;
constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

double PowerOfTen(int nExponent) {
  return nExponent >= 0 && nExponent <= 15 ? kPowersOfTen[nExponent] : std::pow(10.0, nExponent);
}

void* Report(void* pValue, int nLen, int* poutLen) {
  if (poutLen != nullptr) *poutLen = nLen;
  return pValue;
}

}  // namespace

void* CSequenceGenerator::GenerateData(int* poutLen) {
  if (NeedNull()) return Report(&m_fSequence, -1, poutLen);
  m_fSequence = static_cast<double>(m_nNextValue);
  m_nNextValue += m_nStep;
  return Report(&m_fSequence, sizeof m_fSequence, poutLen);
}

void CSequenceGenerator::SetStartingRow(__int64 nStartingRow) {
  m_nStartingRow = nStartingRow;
  m_nNextValue = nStartingRow;
}

CNumberGenerator::eNumericType CNumberGenerator::GetTypeCode() const {
  if (m_nScale != FIXED_SCALE) return eDecmial;
  if (m_nPercision == 0) return eInt;
  return m_nPercision == 63 ? eReal : eFloat;
}

double CNumberGenerator::MakeDecimal() {
  if (m_nPercision > m_nScale) {
    // kept: a negative scale costs one digit more than it takes away
    const int nMaxPrecision = m_nPercision - m_nScale - (m_nScale < 0 ? 1 : 0);
    const bool bExact = nMaxPrecision >= 1 && nMaxPrecision <= 15;
    return m_pRandGen->UnifReal(0.0, bExact ? PowerOfTen(nMaxPrecision) - 1 : kMaxInt);
  }
  // kept: no draw for these. A negative scale that arrives as a byte without sign (254) ends up here.
  if (m_nPercision > 10 || m_nScale > 10) return 0.0;
  // kept: 10 to the scale plus one, so values stay below a tenth of what the column holds
  const double fPValue = PowerOfTen(m_nPercision);
  const double fSValue = PowerOfTen(m_nScale + 1);
  return m_pRandGen->UnifReal(0.0, (fPValue - 1) / fSValue);
}

void* CNumberGenerator::GenerateData(int* poutLen) {
  REP_ASSERT_AT(poutLen != nullptr, "poutLen != __null", "DataGenerator", 75, "GenerateData");
  REP_ASSERT_AT(m_pRandGen != nullptr, "m_pRandGen != __null", "DataGenerator", 76, "GenerateData");
  if (NeedNull()) return Report(&m_fValue, -1, poutLen);  // kept: updates write the value before for it
  switch (GetTypeCode()) {
    case eReal:
      m_fValue = m_pRandGen->UnifReal(1.0, 9999.99);
      break;
    case eInt:
      m_fValue = static_cast<double>(m_pRandGen->UnifInt(1, 2147483647));
      break;
    case eFloat:
      m_fValue = m_pRandGen->UnifReal(1.0, 999999.99);
      break;
    case eDecmial:
      m_fValue = MakeDecimal();
      break;
  }
  return Report(&m_fValue, sizeof m_fValue, poutLen);
}

CStrGenerator::CStrGenerator(int nMaxLength) : m_nMaxLength(nMaxLength + 1) {
  REP_ASSERT_AT(m_nMaxLength > 0, "m_nMaxLength > 0", "DataGenerator", 141, "CStrGenerator");
  AllocStr();
}

CStrGenerator::~CStrGenerator() { std::free(m_lpValue); }

int CStrGenerator::AllocStr() {
  std::free(m_lpValue);
  m_lpValue =
      m_nMaxLength > 0 ? static_cast<char*>(std::calloc(static_cast<size_t>(m_nMaxLength), 1)) : nullptr;
  return m_lpValue != nullptr ? 1 : 0;
}

void* CStrGenerator::GenerateData(int* poutLen) {
  REP_ASSERT_AT(m_lpValue != nullptr, "m_lpValue != __null", "DataGenerator", 168, "GenerateData");
  const bool bNull = NeedNull();  // kept: drawn before the buffer is looked for, so that streams do not shift
  if (m_lpValue == nullptr) return Report(nullptr, -1, poutLen);
  std::memset(m_lpValue, 0, static_cast<size_t>(m_nMaxLength));
  if (bNull) return Report(m_lpValue, -1, poutLen);
  int nLen = m_pRandGen->MakeAlphaString(1, m_nMaxLength - 1, m_strText);
  REP_ASSERT_AT(nLen < m_nMaxLength, "nLen < m_nMaxLength", "DataGenerator", 179, "GenerateData");
  nLen = std::min(nLen, m_nMaxLength - 1);  // kept: for size 0, where a letter is asked for and none reported
  std::memcpy(m_lpValue, m_strText.data(), std::min(m_strText.size(), static_cast<size_t>(m_nMaxLength)));
  return Report(m_lpValue, nLen, poutLen);
}

void* CDateGenerator::GenerateData(int* poutLen) {
  // kept: a nullable column draws once more than it uses, so that the stream of the columns after it stays as
  // it is
  if (m_bAllowNull) m_pRandGen->UnifInt(1, 100);
  std::memset(m_szDate, 0, sizeof m_szDate);
  if (NeedNull()) return Report(m_szDate, -1, poutLen);
  lkDateTime dtOut;
  m_pRandGen->GenerateDate(dtStartDate, dtEndDate, dtOut);
  const std::string strDate = dtOut.Format("%Y/%m/%d %H:%M:%S");
  const size_t nLen = std::min(strDate.size(), sizeof m_szDate - 1);
  std::memcpy(m_szDate, strDate.data(), nLen);
  return Report(m_szDate, static_cast<int>(nLen), poutLen);
}
