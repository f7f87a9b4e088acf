// SPDX-License-Identifier: Apache-2.0
// What the tests of the load share: transaction copies of numbered users with the fields of the host in
// reach, on top of a base with a connected driver whose backup operations are answered as told.
#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "BackupDriver.h"
#include "Benchmarks/CREP_ORA8/CREP_InitObjects_ORA8.h"
#include "ConnectedDriver.h"
#include "DescribedTable.h"

namespace scripted {

// A transaction copy whose host fields can be read.
template <class Load>
class Opened : public Load {
 public:
  using CXact::m_nLastReadTime;
  using CXact::m_nNumberOfSets;
  using CXact::m_nRowsProcessed;
  using CXact::m_nSetNumber;

  std::vector<std::string> Tables() const requires requires(const Load& load) { load.m_TableArray; }
  {
    std::vector<std::string> names;
    for (const LKString& szName : this->m_TableArray) names.push_back(szName.ToChar());
    return names;
  }
  std::string Set() const { return std::to_string(m_nSetNumber) + " of " + std::to_string(m_nNumberOfSets); }
};
using LoadUser = Opened<CXact_LoadTable_ORA8>;

template <class Base>
class LoadTestOn : public Base {
 protected:
  LoadTestOn() { SetRowsPerCommit(500); }
  ~LoadTestOn() override { SetRowsPerCommit(500); }

  static void SetRowsPerCommit(long nRows) {
    LKGetConfig()->WriteProfileInt(L"Settings", L"RowsPerCommit", nRows);
  }
  // Tables 1 to nTables, each with a key and a number.
  void HaveTables(int nTables) {
    m_properties.GetRepBenchmarkProperties().SetTableNumber(nTables);
    for (int i = 1; i <= nTables; ++i) {
      DescribeTable("LK_REP_TABLE" + std::to_string(i), {IdColumn(), NumberColumn("COLUMN1", 5, 0)});
      DescribeTable("LK_REP_TABLE" + std::to_string(i) + "_BAK", {IdColumn(), NumberColumn("COLUMN1", 5, 0)});
    }
  }
  void UseBackup() { m_properties.SetCreateUseBackup(true); }

  template <class Load = LoadUser>
  std::unique_ptr<Load> User(int nUserID, int nTotalUsers) {
    auto pLoad = std::make_unique<Load>();
    pLoad->SetDriver(&this->m_driver);
    pLoad->SetUserID(nUserID);
    pLoad->SetTotalUsers(nTotalUsers);
    pLoad->SetBenchmarkProperties(m_properties);
    return pLoad;
  }
  // A user after its PreBenchmark; the record of calls is then empty.
  std::unique_ptr<LoadUser> ReadyUser(int nUserID, int nTotalUsers) {
    auto pUser = User(nUserID, nTotalUsers);
    EXPECT_EQ(pUser->PreBenchmark(), 1);
    this->m_driver.m_operations.clear();
    Oci().ClearCalls();
    return pUser;
  }
  // The IDs that were inserted into that table, in order.
  static std::vector<long> InsertedIds(const std::string& table) {
    std::vector<long> ids;
    for (const Execution& execution : Oci().Executions()) {
      if (!execution.sql.starts_with("INSERT INTO " + table + " ")) continue;
      for (const auto& row : execution.rows) ids.push_back(std::stol(*row[0]));
    }
    return ids;
  }
  static std::vector<ub4> BatchSizes() {
    std::vector<ub4> sizes;
    for (const Execution& execution : Oci().Executions())
      if (execution.sql.starts_with("INSERT")) sizes.push_back(execution.iters);
    return sizes;
  }

  CBenchmarkProperties m_properties;
};
using LoadTest = LoadTestOn<ConnectedDriver<BackupDriver>>;

// nFirst, nFirst + 1, … nLast
inline std::vector<long> Ids(long nFirst, long nLast) {
  std::vector<long> ids;
  for (long nRow = nFirst; nRow <= nLast; ++nRow) ids.push_back(nRow);
  return ids;
}

}  // namespace scripted
