// SPDX-License-Identifier: Apache-2.0
// The fixture of the workload tests: on top of a base with a connected driver, a replication benchmark and
// one copy of a transaction bound to both as virtual user 3, with nine tables that all have an ID, a number,
// a text and a date column.
#pragma once

#include <wx/log.h>

#include <set>

#include "Benchmarks/CREP_ORA8/CREP_ORA8.h"
#include "Benchmarks/CREP_ORA8/Xact_Delete.h"
#include "ConnectedDriver.h"
#include "ForeignDriver.h"
#include "core/Random.h"
#include "db/Xact.h"

namespace scripted {

inline constexpr int kUser = 3;
inline constexpr char kSequenceQuery[] = "SELECT LK_REP_ID_SEQ.NEXTVAL FROM DUAL";

template <class Transaction, class Base = ConnectedDriver<>>
class WorkloadTest : public Base {
 protected:
  explicit WorkloadTest(int nTables = 1) {
    wxLog::SetLogLevel(wxLOG_Message);  // the debug line of every execution is for a LogRecorder only
    SetSettings(nTables, 1.0);
    m_xact.SetDriver(&this->m_driver);
    m_xact.SetBenchmark(&m_benchmark);
    m_xact.SetUserID(kUser);
    Oci().AnswerCounting(kSequenceQuery, 1001);
    for (int n = 1; n <= 9; ++n) DescribeTable(n, kColumns);
  }
  ~WorkloadTest() override {
    m_xact.PostBenchmark();
    EXPECT_EQ(Oci().Violations(), std::vector<std::string>{});
  }

  void SetSettings(int nTables, double fScale) {
    CBenchmarkProperties properties;
    properties.GetRepBenchmarkProperties().SetTableNumber(nTables);
    properties.SetScale(fScale);
    m_xact.SetBenchmarkProperties(properties);
  }

  static void DescribeTable(int nTable, const std::vector<ColumnSpec>& columns) {
    Oci().Describe("SELECT * FROM LK_REP_TABLE" + std::to_string(nTable), columns);
  }
  void Start() {
    ASSERT_EQ(m_xact.PreBenchmark(), 1);
    Oci().ClearCalls();
  }
  // The delete of another copy: takes the first recorded row.
  void DeleteOneRow() {
    CXact_Delete xact;
    xact.SetDriver(&this->m_driver);
    xact.SetBenchmark(&m_benchmark);
    xact.SetUserID(kUser);
    xact.SetBenchmarkProperties(m_xact.GetBenchmarkProperties());
    ASSERT_EQ(xact.PreBenchmark(), 1);
    EXPECT_EQ(xact.Execute(), 1);
    EXPECT_EQ(xact.PostBenchmark(), 1);
  }
  std::set<__int64> RowsOfExecutions(int nExecutions) {
    std::set<__int64> rows;
    for (int i = 0; i < nExecutions; ++i) {
      EXPECT_EQ(m_xact.Execute(), 1);
      rows.insert(m_xact.m_nRowID);
    }
    return rows;
  }
  std::vector<std::pair<long, long>> MapEntries() {
    std::vector<std::pair<long, long>> entries;
    auto& map = m_benchmark.m_MapTableNumToRowID;
    for (auto pos = map.GetStartPosition(); pos != map.GetEndPosition(); ++pos) entries.push_back(*pos);
    return entries;
  }

  static inline const std::vector<ColumnSpec> kColumns = {{"ID", SQLT_NUM, 22, 0, -127, 0},
                                                          {"COLUMN1", SQLT_NUM, 22, 5, 2, 0},
                                                          {"COLUMN2", SQLT_CHR, 4, 0, 0, 0},
                                                          {"COLUMN3", SQLT_DAT, 7, 0, 0, 0}};
  CREP_ORA8 m_benchmark;
  Transaction m_xact;
};

}  // namespace scripted
