// SPDX-License-Identifier: Apache-2.0
// The transactions that create the schema: the generated tables, the ID sequence and the properties table.
// Each runs once per set-up on one user's driver. Not thread-safe: a copy belongs to one user's thread.
#pragma once

#include "core/LKString.h"
#include "core/LKTypes.h"
#include "db/Xact.h"

struct OCIStmt;

// Creates the tables from the first table number of the run to the number of tables, each with columns of
// randomly drawn types. Stops at the first failure; tables made before it stay.
class CXact_Create_RepTables : public CXact {
  wxDECLARE_DYNAMIC_CLASS(CXact_Create_RepTables);

 public:
  CXact_Create_RepTables();
  ~CXact_Create_RepTables() override;

  int Execute() override;
  LKString GetExecuteSQL() override;  // the text of the last table built

  // Leaves the text that creates the table in m_szSQL; empty when there are no column-type definitions. The
  // types depend on the table number, the weights and the number of columns alone. Throws std::out_of_range
  // when the weights leave no definition to choose.
  void BuildCreationSQL(int nTableIndex);

  LKString m_szSQL;
  __int64 m_nRows = 0;  // stay 0, likewise below
  __int64 m_nBytes = 0;

 private:
  void BuildCreationSQLOrFree(OCIStmt* pStmt, int nTableIndex);
};

// Creates the ID sequence, which starts just above the rows that a load at the benchmark's scale writes.
class CXact_Create_Sequence : public CXact {
  wxDECLARE_DYNAMIC_CLASS(CXact_Create_Sequence);

 public:
  CXact_Create_Sequence();
  ~CXact_Create_Sequence() override;

  int Execute() override;

  LKString m_szSQL;
  __int64 m_nRows = 0;
};

// Creates the properties table and records the settings in it, in one block. A run that starts at a later
// table leaves the table as it is.
class CXact_Create_Replication_Properties_Table : public CXact {
  wxDECLARE_DYNAMIC_CLASS(CXact_Create_Replication_Properties_Table);

 public:
  CXact_Create_Replication_Properties_Table();
  ~CXact_Create_Replication_Properties_Table() override;

  int Execute() override;

  LKString m_szSQL;
  __int64 m_nRows = 0;

 private:
  LKString BuildInsertBlock();
  void AppendColumnStructures(LKString& szBlock);
};
