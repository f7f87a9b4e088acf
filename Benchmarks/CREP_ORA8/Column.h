// SPDX-License-Identifier: Apache-2.0
// CColumn is one column of a described table, CColumns all of them in select-list order. CColumns owns its
// columns; the statement and the error handle belong to the caller and must live while a column is described.
// Used by the thread of the transaction that described the table.
#pragma once

#include <oci.h>

#include "core/LKString.h"
#include "core/TRKArray.h"

class IBind;

class CColumn {
 public:
  CColumn(OCIStmt* pStmt, OCIError* pError, int nNumber);

  int Initialize();  // reads the column from the described statement; 1, or 0 at the first OCI failure
  // A new bind with arrays of nMaxRows rows (caller owns); null, after an assertion, for a data type without
  // one.
  IBind* CreateBind(unsigned int nMaxRows);

  const LKString& GetName() const { return m_strName; }
  ub2 GetDataType() const { return m_nDataType; }
  ub2 GetSize() const { return m_nSize; }
  ub2 GetPrecision() const { return m_nPrecision; }
  sb1 GetScale() const { return m_nScale; }
  int GetColNumber() const { return m_nNumber; }
  bool IsNullable() const { return m_nNullable != 0; }
  bool IsDateColumn() const { return m_nDataType == SQLT_DAT || m_nDataType == SQLT_TIMESTAMP; }
  bool IsPrimaryKey() const { return m_strName.CompareNoCase(L"ID") == 0; }

  int m_nNumber;  // from 1: position in the select list and of the insert's placeholder
  LKString m_strName;
  ub2 m_nDataType = 0;   // OCI's internal type code
  ub2 m_nSize = 0;       // bytes
  ub2 m_nPrecision = 0;  // read for NUMBER columns only, likewise the scale
  sb1 m_nScale = 0;
  ub1 m_nNullable = 0;
  OCIStmt* m_pStmt;
  OCIError* m_pError;

 private:
  int ReadAttribute(void* pParam, void* pValue, ub4* pSize, ub4 nAttribute);
};

class CColumns {
 public:
  CColumns() = default;
  ~CColumns();
  CColumns(const CColumns&) = delete;
  CColumns& operator=(const CColumns&) = delete;

  // Describes every column of the statement; 0 at the first failure, with the columns before it kept.
  int Initialize(OCIStmt* pStmt, OCIError* pError);

  CColumn* GetAt(long long index) const;  // null, after an assertion, outside 0..count-1
  CColumn* operator[](long long index) const { return GetAt(index); }
  CColumn* operator[](const wchar_t* name) const;  // the first of that name ignoring case, or null
  ub4 GetCount() const { return m_nColumns; }
  void DeleteAll();

  CTRKArray<CColumn*, CColumn*> m_ColArray;
  ub4 m_nColumns = 0;  // as OCI reports it
};
