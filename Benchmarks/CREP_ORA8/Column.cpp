// SPDX-License-Identifier: Apache-2.0
#include "StdAfx.h"

#include "Column.h"

#include <memory>

#include "Bind.h"
#include "OciCall.h"

// The binds that the loader uses, and the base of the text bind, are made here once.
template class CBind<double, SQLT_FLT>;
template class CBind<char, SQLT_STR>;
template class CStrBind<char>;

namespace {

constexpr int kDateWidth = 35;  // one row of a date column's text

IBind* InitializeBind(IBind* pBind) {
  pBind->Initialize();  // kept: the result is not looked at
  return pBind;
}

}  // namespace

CColumn::CColumn(OCIStmt* pStmt, OCIError* pError, int nNumber)
    : m_nNumber(nNumber), m_pStmt(pStmt), m_pError(pError) {}

int CColumn::ReadAttribute(void* pParam, void* pValue, ub4* pSize, ub4 nAttribute) {
  return IsFailure(OCIAttrGet(pParam, OCI_DTYPE_PARAM, pValue, pSize, nAttribute, m_pError)) ? 0 : 1;
}

int CColumn::Initialize() {
  REP_ASSERT(m_pStmt && m_pError, "m_pStmt && m_pError");
  if (m_pStmt == nullptr || m_pError == nullptr) return 0;

  void* pParam = nullptr;  // kept: not freed, it goes with the statement
  if (IsFailure(OCIParamGet(m_pStmt, OCI_HTYPE_STMT, m_pError, &pParam, static_cast<ub4>(m_nNumber))))
    return 0;
  const char* szName = nullptr;
  ub4 nNameLength = 0;
  if (!ReadAttribute(pParam, &szName, &nNameLength, OCI_ATTR_NAME)) return 0;
  m_strName = LKString(szName, static_cast<int>(nNameLength));
  if (!ReadAttribute(pParam, &m_nDataType, nullptr, OCI_ATTR_DATA_TYPE)) return 0;
  if (!ReadAttribute(pParam, &m_nSize, nullptr, OCI_ATTR_DATA_SIZE)) return 0;
  if (!ReadAttribute(pParam, &m_nNullable, nullptr, OCI_ATTR_IS_NULL)) return 0;
  if (m_nDataType != SQLT_NUM) return 1;  // kept: other numbers have precision and scale 0
  if (!ReadAttribute(pParam, &m_nPrecision, nullptr, OCI_ATTR_PRECISION)) return 0;
  return ReadAttribute(pParam, &m_nScale, nullptr, OCI_ATTR_SCALE);
}

IBind* CColumn::CreateBind(unsigned int nMaxRows) {
  switch (m_nDataType) {
    case SQLT_NUM:
    case SQLT_INT:
    case SQLT_LNG:  // kept: LONG is bound as a number, and updates count on it
      return InitializeBind(new CBind<double, SQLT_FLT>(this, nMaxRows));
    case SQLT_CHR:
    case SQLT_AFC:
    case SQLT_AVC:
      return InitializeBind(new CStrBind<char>(this, nMaxRows, m_nSize + 1));
    case SQLT_DAT:
    case SQLT_TIMESTAMP:
      return InitializeBind(new CStrBind<char>(this, nMaxRows, kDateWidth));
    default:
      REP_ASSERT(false, "0");
      return nullptr;
  }
}

CColumns::~CColumns() {
  if (!m_ColArray.IsEmpty()) DeleteAll();
}

int CColumns::Initialize(OCIStmt* pStmt, OCIError* pError) {
  if (IsFailure(OCIAttrGet(pStmt, OCI_HTYPE_STMT, &m_nColumns, nullptr, OCI_ATTR_PARAM_COUNT, pError)))
    return 0;
  for (ub4 nPosition = 1; nPosition <= m_nColumns; ++nPosition) {
    auto pColumn = std::make_unique<CColumn>(pStmt, pError, static_cast<int>(nPosition));
    if (!pColumn->Initialize()) return 0;
    m_ColArray.Add(pColumn.release());
  }
  return 1;
}

CColumn* CColumns::GetAt(long long index) const {
  const bool bInside = index >= 0 && index <= m_ColArray.GetUpperBound();
  REP_ASSERT(bInside, "index >= 0 && index <= m_ColArray.GetUpperBound()");
  return bInside ? m_ColArray.GetAt(static_cast<long>(index)) : nullptr;
}

CColumn* CColumns::operator[](const wchar_t* name) const {
  for (CColumn* pColumn : m_ColArray)
    if (pColumn->GetName().CompareNoCase(name) == 0) return pColumn;
  return nullptr;
}

void CColumns::DeleteAll() {
  for (CColumn* pColumn : m_ColArray) delete pColumn;
  m_ColArray.RemoveAll();
}
