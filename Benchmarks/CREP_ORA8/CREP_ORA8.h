// SPDX-License-Identifier: Apache-2.0
// The replication benchmark: what the library hands to the host. It owns the transactions that it registers
// and the map of recently inserted rows that the workload transactions of all users share. Registration runs
// on the host's loading thread; the three row operations may be called from any thread.
#pragma once

#include <mutex>

#include "core/TRKMap.h"
#include "db/SSBenchmark.h"

class CREP_ORA8 : public CSSBenchmark {
  wxDECLARE_DYNAMIC_CLASS(CREP_ORA8);

 public:
  CREP_ORA8();
  ~CREP_ORA8() override;

  // The benchmark as this class; null when there is none or it is another one, by class information.
  static CREP_ORA8* From(CSSBenchmark* pBenchmark);

  // Hands every transaction to AddXact: with bSetup the ten set-up and refresh transactions first, then in
  // any case the three of the workload. Returns 1.
  int RegisterTransactions(int bSetup) override;

  // Records a row unless the map already holds 100 entries; 1 when it was recorded. A row of another table
  // with the same sum of table number and ID is overwritten.
  int RecordRow(long nTableNum, long nRowID);
  // Copies the entry with the smallest key and leaves it in the map; 0, and both outputs untouched, when
  // there is none.
  int TakeFirstRow(long& nTableNum, long& nRowID);
  // Removes the entry with the row's key, if there is one.
  void ForgetRow(long nTableNum, long nRowID);

  // Row ID by the sum of table number and row ID, so the table number is key minus value. While transactions
  // run it is reached through the operations above only. kept: no run clears it, so the rows of the run
  // before are the first ones that the next updates and deletes.
  CTRKMap<long, long> m_MapTableNumToRowID;

 private:
  void AddSetupTransactions();
  void AddWorkloadTransactions();

  std::mutex m_MapLock;  // guards m_MapTableNumToRowID
};
