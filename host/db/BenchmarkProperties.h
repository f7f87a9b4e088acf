// SPDX-License-Identifier: Apache-2.0
// The settings of a run, as the host gives them to every transaction. Value types: a copy shares the
// (immutable) column-type definitions with its original. Set by the runner before a transaction starts, read
// by its thread.
#pragma once

#include <wx/object.h>

#include <memory>
#include <vector>

#include "core/LKString.h"
#include "core/TRKArray.h"
#include "core/TRKMap.h"

// One column-type definition: SQL type text, relative frequency, whether the column may hold NULL.
class ColumnInfo : public wxObject {
  wxDECLARE_DYNAMIC_CLASS(ColumnInfo);

 public:
  ColumnInfo() = default;
  ColumnInfo(const LKString& szTypeName, int nWeight, bool bIsNull);

  const LKString& GetTypeName() const { return m_szTypeName; }
  int GetWeight() const { return m_nWeight; }
  bool GetIsNull() const { return m_bIsNull; }

 private:
  LKString m_szTypeName;
  int m_nWeight = 0;
  bool m_bIsNull = false;
};

// Pointers to ColumnInfo objects that somebody else owns; an entry may be null.
class ColumnInfoArray : public CTRKArray<wxObject*, wxObject*> {
 public:
  ColumnInfoArray() = default;
};

class CRepBenchmarkProperties {
 public:
  enum enumDistType {
    NONE_DISTRIBUTION = 0,
    ABSOLUTE_DISTRIBUTION = 1,
    UNIFORM_DISTRIBUTION = 2,
    NEGEXP_DISTRIBUTION = 3,
    NORMAL_DISTRIBUTION = 4,
    POISSON_DISTRIBUTION = 5
  };

  int GetTableNumber() const { return m_nTableNumber; }
  int GetMinColumnNumber() const { return m_nMinColumnNumber; }
  int GetMaxColumnNumber() const { return m_nMaxColumnNumber; }
  // kept: recorded with the tables and otherwise not used, the number of columns is uniform.
  enumDistType GetColumnDistribution() const { return m_eColumnDistribution; }
  ColumnInfoArray* GetColumnInfo() const;  // null when no definitions were set

  void SetTableNumber(int nTables) { m_nTableNumber = nTables; }
  void SetColumnNumbers(int nMin, int nMax);
  void SetColumnDistribution(enumDistType eType) { m_eColumnDistribution = eType; }
  // Replaces the definitions; `columns` may hold null entries. Copies made before keep theirs.
  void SetColumnInfo(std::vector<std::shared_ptr<wxObject>> columns);
  void ClearColumnInfo() { m_pColumns.reset(); }

 private:
  struct Columns;
  int m_nTableNumber = 0;
  int m_nMinColumnNumber = 0;
  int m_nMaxColumnNumber = 0;
  enumDistType m_eColumnDistribution = UNIFORM_DISTRIBUTION;
  std::shared_ptr<Columns> m_pColumns;
};

class CBenchmarkProperties {
 public:
  double GetScale() const { return m_fScale; }                    // 1000 rows per table and unit
  double GetCurrentScale() const { return m_fCurrentScale; }      // what a refresh cuts back to
  double GetLoadedMaxScale() const { return m_fLoadedMaxScale; }  // what is loaded already
  bool IsCreateUseBackup() const { return m_bCreateUseBackup; }
  bool IsEnablePartition() const { return m_bEnablePartition; }
  bool GetLastIsBackupOption() const { return m_bLastIsBackupOption; }
  bool GetLastLoadFailed() const { return m_bLastLoadFailed; }
  int GetIntAttribute1() const { return m_nIntAttribute1; }  // first table number of this run; 0: from 1
  int GetIntAttribute2() const { return m_nIntAttribute2; }  // above 0: a refresh works on the backup copies
  int GetIntAttribute3() const {
    return m_nIntAttribute3;
  }  // tables that are there already: the load skips them
  CTRKMapStringToString& GetBenchmarkCreationSQLMappings() { return m_CreationSQLMappings; }
  CRepBenchmarkProperties& GetRepBenchmarkProperties() { return m_RepProperties; }
  const CRepBenchmarkProperties& GetRepBenchmarkProperties() const { return m_RepProperties; }

  void SetScale(double fScale) { m_fScale = fScale; }
  void SetCurrentScale(double fScale) { m_fCurrentScale = fScale; }
  void SetLoadedMaxScale(double fScale) { m_fLoadedMaxScale = fScale; }
  void SetCreateUseBackup(bool bUse) { m_bCreateUseBackup = bUse; }
  void SetEnablePartition(bool bEnable) { m_bEnablePartition = bEnable; }
  void SetLastIsBackupOption(bool bWas) { m_bLastIsBackupOption = bWas; }
  void SetLastLoadFailed(bool bFailed) { m_bLastLoadFailed = bFailed; }
  void SetIntAttribute1(int nValue) { m_nIntAttribute1 = nValue; }
  void SetIntAttribute2(int nValue) { m_nIntAttribute2 = nValue; }
  void SetIntAttribute3(int nValue) { m_nIntAttribute3 = nValue; }

 private:
  double m_fScale = 1.0;
  double m_fCurrentScale = 1.0;
  double m_fLoadedMaxScale = 0.0;
  bool m_bCreateUseBackup = false;
  bool m_bEnablePartition = false;
  bool m_bLastIsBackupOption = false;
  bool m_bLastLoadFailed = false;
  int m_nIntAttribute1 = 0;
  int m_nIntAttribute2 = 0;
  int m_nIntAttribute3 = 0;
  CTRKMapStringToString m_CreationSQLMappings;
  CRepBenchmarkProperties m_RepProperties;
};
