// SPDX-License-Identifier: Apache-2.0
// The transactions that drop the schema: the generated tables, the ID sequence and the properties table. Each
// runs once on one user's driver. Not thread-safe: a copy belongs to one user's thread.
#pragma once

#include "core/LKString.h"
#include "core/LKTypes.h"
#include "db/Xact.h"

class COracle8Driver;
struct OCIStmt;

// Drops the tables from the first table number of the run upwards, with their backups, until one is missing.
class CXact_Drop_RepTables : public CXact {
  wxDECLARE_DYNAMIC_CLASS(CXact_Drop_RepTables);

 public:
  CXact_Drop_RepTables();
  ~CXact_Drop_RepTables() override;

  int Execute() override;  // always 0

  LKString m_szSQL;     // the statement, with the table number left open
  __int64 m_nRows = 0;  // stay 0, likewise below
  __int64 m_nBytes = 0;

 private:
  bool DropTable(COracle8Driver* pDriver, OCIStmt* pStmt, int nTableIndex);
};

// Drops the ID sequence; returns what the driver's execute returned.
class CXact_Drop_Sequence : public CXact {
  wxDECLARE_DYNAMIC_CLASS(CXact_Drop_Sequence);

 public:
  CXact_Drop_Sequence();
  ~CXact_Drop_Sequence() override;

  int Execute() override;
};

// Drops the properties table; 0 when it is missing, without a report.
// REQUIRES: an Oracle driver.
class CXact_Drop_Replication_Properties_Table : public CXact {
  wxDECLARE_DYNAMIC_CLASS(CXact_Drop_Replication_Properties_Table);

 public:
  CXact_Drop_Replication_Properties_Table();
  ~CXact_Drop_Replication_Properties_Table() override;

  int Execute() override;

  LKString m_szSQL;
  __int64 m_nRows = 0;
};
