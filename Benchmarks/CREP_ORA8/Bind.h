// SPDX-License-Identifier: Apache-2.0
// A bind is the client side of one column of an array insert: a value array and an indicator array of
// m_nMaxRows rows, the OCI bind over them, and the generator of the column's values. It owns the arrays and
// the generator; the column is not owned, and the OCI bind belongs to the statement. One thread.
//
// Life: Initialize allocates the arrays, BindColumn ties them to a prepared statement, SetData fills them row
// by row, batch after batch; they are never resized.
#pragma once

#include <oci.h>

#include <cstdlib>
#include <cstring>

#include "Column.h"
#include "DataGenerator.h"
#include "OciCall.h"
#include "StdAfx.h"

class IBind {
 public:
  explicit IBind(CColumn* pColumn) : m_pColumn(pColumn) {}
  IBind(const IBind&) = delete;
  IBind& operator=(const IBind&) = delete;

  // Slot order is part of the contract. Each int is 1 for success, 0 for a failure that the caller reports.
  virtual ~IBind() = default;
  virtual int Initialize() = 0;
  virtual int BindColumn(OCIStmt* pStmt, OCIError* pError) = 0;
  // nLen is the value's length in bytes, -1 for NULL.
  virtual int SetData(long iRowIndex, void* pValue, int nLen) = 0;
  virtual IDataGenerator* GetDataGenerator() = 0;  // made at the first call; the bind keeps it

  CColumn* GetColumn() const { return m_pColumn; }

  CColumn* m_pColumn;
};

// T is the element of the value array, SQLT its external type code.
template <class T, int SQLT>
class CBind : public IBind {
 public:
  CBind(CColumn* pColumn, unsigned int nMaxRows) : IBind(pColumn), m_nMaxRows(nMaxRows) {}
  ~CBind() override { Cleanup(); }

  int Initialize() override;
  int BindColumn(OCIStmt* pStmt, OCIError* pError) override { return BindArrays(pStmt, pError, sizeof(T)); }
  int SetData(long iRowIndex, void* pValue, int nLen) override;
  IDataGenerator* GetDataGenerator() override;
  void Cleanup();  // frees the arrays and the generator

  T* m_pData = nullptr;
  sb2* m_pIndicator = nullptr;
  OCIBind* m_pBind = nullptr;
  IDataGenerator* m_pDataGenerator = nullptr;
  int m_nSeed;  // kept: never set or read
  unsigned int m_nMaxRows;

 protected:
  // nWidth is the number of bytes of one row's value.
  int AllocateArrays(size_t nWidth);
  int BindArrays(OCIStmt* pStmt, OCIError* pError, size_t nWidth);
  IDataGenerator* KeepGenerator(IDataGenerator* pGenerator);
  // kept: one row looser than the assertion before it. The row after the last passes, but has no slot.
  bool IsRowPassed(long iRowIndex) const { return iRowIndex >= 0 && iRowIndex <= m_nMaxRows; }
  bool HasSlot(long iRowIndex) const { return iRowIndex < m_nMaxRows; }
};

// Zero-terminated text (SQLT_STR) in slots of m_nMaxChar bytes.
template <class T>
class CStrBind : public CBind<T, SQLT_STR> {
 public:
  CStrBind(CColumn* pColumn, unsigned int nMaxRows, int nMaxChar)
      : CBind<T, SQLT_STR>(pColumn, nMaxRows), m_nMaxChar(nMaxChar) {}

  int Initialize() override;
  int BindColumn(OCIStmt* pStmt, OCIError* pError) override {
    return this->BindArrays(pStmt, pError, static_cast<size_t>(m_nMaxChar));
  }
  int SetData(long iRowIndex, void* pValue, int nLen) override;  // REQUIRES: nLen <= m_nMaxChar
  IDataGenerator* GetDataGenerator() override;

  const int m_nMaxChar;  // terminator included
};

template <class T, int SQLT>
int CBind<T, SQLT>::Initialize() {
  REP_ASSERT(m_pData == nullptr, "m_pData == __null");
  REP_ASSERT(m_pIndicator == nullptr, "m_pIndicator == __null");
  return AllocateArrays(sizeof(T));
}

template <class T, int SQLT>
int CBind<T, SQLT>::AllocateArrays(size_t nWidth) {
  std::free(m_pData);
  std::free(m_pIndicator);
  m_pIndicator = nullptr;
  m_pData = static_cast<T*>(std::calloc(m_nMaxRows, nWidth));
  if (m_pData == nullptr) return 0;
  m_pIndicator = static_cast<sb2*>(std::calloc(m_nMaxRows, sizeof(sb2)));
  return m_pIndicator != nullptr ? 1 : 0;
}

template <class T, int SQLT>
int CBind<T, SQLT>::BindArrays(OCIStmt* pStmt, OCIError* pError, size_t nWidth) {
  REP_ASSERT_IN(pStmt != nullptr, "pStmt != __null", __FILE__, __LINE__,
                "BindColumn");  // whose helper this is
  if (pStmt == nullptr) return 0;
  const auto nSize = static_cast<sb4>(nWidth);
  const sword nStatus =
      OCIBindByPos(pStmt, &m_pBind, pError, static_cast<ub4>(m_pColumn->GetColNumber()), m_pData, nSize, SQLT,
                   m_pIndicator, nullptr, nullptr, 0, nullptr, OCI_DEFAULT);
  if (IsFailure(nStatus)) return 0;
  // kept: an indicator skip of 0, so the first row's indicator stands for every row of a batch
  return IsFailure(OCIBindArrayOfStruct(m_pBind, pError, static_cast<ub4>(nWidth), 0, 0, 0)) ? 0 : 1;
}

template <class T, int SQLT>
int CBind<T, SQLT>::SetData(long iRowIndex, void* pValue, int nLen) {
  REP_ASSERT(m_pData != nullptr, "m_pData != __null");
  REP_ASSERT(m_pIndicator != nullptr, "m_pIndicator != __null");
  REP_ASSERT(iRowIndex >= 0 && iRowIndex < m_nMaxRows, "iRowIndex >= 0 && iRowIndex < m_nMaxRows");
  if (!IsRowPassed(iRowIndex)) return 0;
  if (!HasSlot(iRowIndex)) return 1;
  if (nLen != -1) std::memcpy(m_pData + iRowIndex, pValue, sizeof(T));
  // kept: the length goes in as the indicator, 8 for a number; the database tells -1 from the rest only
  m_pIndicator[iRowIndex] = static_cast<sb2>(nLen);
  return 1;
}

template <class T, int SQLT>
IDataGenerator* CBind<T, SQLT>::KeepGenerator(IDataGenerator* pGenerator) {
  m_pDataGenerator = pGenerator;
  m_pDataGenerator->SetAllowNull(m_pColumn->IsNullable());
  return m_pDataGenerator;
}

template <class T, int SQLT>
IDataGenerator* CBind<T, SQLT>::GetDataGenerator() {
  if constexpr (SQLT != SQLT_FLT) {
    // kept: texts of one byte have no generator; only the bind derived from this one is ever filled
    REP_ASSERT(false, "0");
    return m_pDataGenerator;
  } else {
    if (m_pDataGenerator != nullptr) return m_pDataGenerator;
    if (m_pColumn->IsPrimaryKey()) return KeepGenerator(new CSequenceGenerator);
    // kept: the scale goes over as a byte without sign, so -127 arrives as 129
    return KeepGenerator(
        new CNumberGenerator(m_pColumn->GetPrecision(), static_cast<ub1>(m_pColumn->GetScale())));
  }
}

template <class T, int SQLT>
void CBind<T, SQLT>::Cleanup() {
  std::free(m_pData);
  m_pData = nullptr;
  std::free(m_pIndicator);
  m_pIndicator = nullptr;
  delete m_pDataGenerator;
  m_pDataGenerator = nullptr;
}

template <class T>
int CStrBind<T>::Initialize() {
  REP_ASSERT(this->m_pData == nullptr, "this->m_pData == __null");
  REP_ASSERT(this->m_pIndicator == nullptr, "this->m_pIndicator == __null");
  return this->AllocateArrays(static_cast<size_t>(m_nMaxChar));
}

template <class T>
int CStrBind<T>::SetData(long iRowIndex, void* pValue, int nLen) {
  // kept: silently and before the row is looked at, unlike a number's bind; NULL comes with a value pointer
  // too
  if (pValue == nullptr) return 0;
  REP_ASSERT(iRowIndex >= 0 && iRowIndex < this->m_nMaxRows,
             "iRowIndex >= 0 && iRowIndex < this->m_nMaxRows");
  if (!this->IsRowPassed(iRowIndex)) return 0;
  if (!this->HasSlot(iRowIndex)) return 1;
  // kept: no terminating zero, and slots are not cleared between batches. A shorter value leaves the rest of
  // the longer one before it in the slot, and both are sent.
  if (nLen != -1) std::memcpy(this->m_pData + iRowIndex * m_nMaxChar, pValue, static_cast<size_t>(nLen));
  this->m_pIndicator[iRowIndex] = static_cast<sb2>(nLen);
  return 1;
}

template <class T>
IDataGenerator* CStrBind<T>::GetDataGenerator() {
  if (this->m_pDataGenerator != nullptr) return this->m_pDataGenerator;
  if (this->m_pColumn->IsDateColumn()) return this->KeepGenerator(new CDateGenerator);
  return this->KeepGenerator(new CStrGenerator(this->m_pColumn->GetSize()));
}

// Made once, in Column.cpp: the binds that the loader uses, and the base of the text bind.
extern template class CBind<double, SQLT_FLT>;
extern template class CBind<char, SQLT_STR>;
extern template class CStrBind<char>;
