// SPDX-License-Identifier: Apache-2.0
// The benchmark object, its registration, and its map of inserted rows.
#include <thread>

#include "Benchmarks/CREP_ORA8/CREP_ORA8.h"
#include "ForeignDriver.h"
#include "SchemaFixture.h"

extern "C" int GetBenchmarkClassInfo(CSSBenchmark** benchmark);

namespace {

using testing::ElementsAre;

std::string ClassName(const wxObject& object) {
  return wxString(object.GetClassInfo()->GetClassName()).utf8_string();
}

struct Identity {
  const char* szClass;
  const char* szName;
  const char* szDescription;
  int nID;
  int nType;
};

// In registration order. A description that is not set is the host's default, which is empty too.
const std::vector<Identity>& Identities() {
  static const std::vector<Identity> identities = {
      {"CXact_Create_RepTables", "Create Replication Tables", "", 100, CREATE_TABLE},
      {"CXact_Drop_RepTables", "Drop Replication Tables", "", 120, DROP_TABLE},
      {"CXact_LoadTable_ORA8", "Load Replication tables", "Loading Replication Benchmark tables", 110,
       LOAD_TABLE},
      {"CXact_Create_Sequence", "Create Sequence", "Create Sequence", 161, CREATE_SP},
      {"CXact_Drop_Sequence", "Drop Sequence", "Drop Sequence", 171, DROP_SP},
      {"CXact_Create_Replication_Properties_Table", "Create Replication Properties table",
       "Create Replication Properties Table", 101, CREATE_TABLE},
      {"CXact_Drop_Replication_Properties_Table", "Drop Replication Properties Table", "", 121, DROP_TABLE},
      {"CREP_RefreshTable_ORA8", "Refresh Replication Table", "", 181, TRANSACTION},
      {"CREP_Refresh_Properties_Table", "Refresh Replication Properties", "", 182, TRANSACTION},
      {"CREP_Refresh_Sequence", "Refresh Sequence", "", 183, TRANSACTION},
      {"CXact_Insert", "Insert Transaction", "Replication benchmark insert transaction", 131, UNKNOWN},
      {"CXact_Update", "Update Transaction", "Replication benchmark update transaction", 141, UNKNOWN},
      {"CXact_Delete", "Delete Transaction", "Replication benchmark delete transaction", 151, UNKNOWN}};
  return identities;
}

std::vector<std::string> RegisteredClasses(int bSetup) {
  CREP_ORA8 benchmark;
  EXPECT_EQ(benchmark.RegisterTransactions(bSetup), 1);
  std::vector<std::string> names;
  for (int i = 0; i < benchmark.GetXactCount(); ++i) names.push_back(ClassName(*benchmark.GetXact(i)));
  return names;
}

TEST(Registration, WithSetupAddsAllThirteenInOrder) {
  std::vector<std::string> expected;
  for (const Identity& identity : Identities()) expected.push_back(identity.szClass);
  EXPECT_EQ(RegisteredClasses(1), expected);
  EXPECT_EQ(RegisteredClasses(-5), expected);
}

TEST(Registration, WithoutSetupAddsInsertUpdateAndDeleteOnly) {
  EXPECT_THAT(RegisteredClasses(0), ElementsAre("CXact_Insert", "CXact_Update", "CXact_Delete"));
}

TEST(Registration, EveryTransactionGivesItselfItsIdentity) {
  CREP_ORA8 benchmark;
  benchmark.RegisterTransactions(1);
  ASSERT_EQ(benchmark.GetXactCount(), 13);
  for (int i = 0; i < 13; ++i) {
    const CXact& xact = *benchmark.GetXact(i);
    const Identity& expected = Identities()[static_cast<size_t>(i)];
    EXPECT_EQ(xact.GetName().ToChar(), expected.szName);
    EXPECT_EQ(xact.GetDescription().ToChar(), expected.szDescription) << expected.szClass;
    EXPECT_EQ(xact.GetXactID(), expected.nID) << expected.szClass;
    EXPECT_EQ(xact.GetTransactionType(), expected.nType) << expected.szClass;
  }
}

TEST(Registration, ACopyByIdIsOfTheSameClass) {
  CREP_ORA8 benchmark;
  benchmark.RegisterTransactions(1);
  for (const Identity& expected : Identities()) {
    const std::unique_ptr<CXact> xact(benchmark.GetNewXactByID(expected.nID));
    ASSERT_NE(xact, nullptr) << expected.szClass;
    EXPECT_EQ(ClassName(*xact), expected.szClass);
  }
}

TEST(EntryFunction, StoresANewBenchmarkAndReturnsOne) {
  CSSBenchmark* pFirst = nullptr;
  CSSBenchmark* pSecond = nullptr;
  EXPECT_EQ(GetBenchmarkClassInfo(&pFirst), 1);
  EXPECT_EQ(GetBenchmarkClassInfo(&pSecond), 1);
  const std::unique_ptr<CSSBenchmark> first(pFirst);
  const std::unique_ptr<CSSBenchmark> second(pSecond);
  EXPECT_NE(first, second);
  EXPECT_TRUE(first->IsKindOf(wxCLASSINFO(CREP_ORA8)));
  EXPECT_EQ(first->GetName().ToChar(), "Replication");
  EXPECT_EQ(first->GetBenchmarkID(), 16);
  EXPECT_EQ(first->GetDriverID(), 9);
  EXPECT_EQ(first->GetXactCount(), 0);
}

TEST(InsertedRows, AFreshBenchmarkHasNone) {
  CREP_ORA8 benchmark;
  long nTable = -1;
  long nRow = -2;
  EXPECT_TRUE(benchmark.m_MapTableNumToRowID.IsEmpty());
  EXPECT_EQ(benchmark.TakeFirstRow(nTable, nRow), 0);
  EXPECT_EQ(nTable, -1);
  EXPECT_EQ(nRow, -2);
}

TEST(InsertedRows, TheKeyIsTheSumAndTheValueTheRow) {
  CREP_ORA8 benchmark;
  EXPECT_EQ(benchmark.RecordRow(3, 7), 1);
  long nRow = 0;
  EXPECT_EQ(benchmark.m_MapTableNumToRowID.Lookup(10, nRow), 1);
  EXPECT_EQ(nRow, 7);
}

TEST(InsertedRows, AnotherTablesRowWithTheSameSumOverwrites) {
  CREP_ORA8 benchmark;
  benchmark.RecordRow(3, 7);
  benchmark.RecordRow(4, 6);
  EXPECT_EQ(benchmark.m_MapTableNumToRowID.GetCount(), 1);
  long nTable = 0;
  long nRow = 0;
  EXPECT_EQ(benchmark.TakeFirstRow(nTable, nRow), 1);
  EXPECT_EQ(nTable, 4);
  EXPECT_EQ(nRow, 6);
}

TEST(InsertedRows, TheFirstIsTheSmallestKeyAndStays) {
  CREP_ORA8 benchmark;
  benchmark.RecordRow(1, 1005);
  benchmark.RecordRow(2, 1001);
  for (int nTime = 0; nTime < 2; ++nTime) {
    long nTable = 0;
    long nRow = 0;
    EXPECT_EQ(benchmark.TakeFirstRow(nTable, nRow), 1);
    EXPECT_EQ(nTable, 2);
    EXPECT_EQ(nRow, 1001);
  }
}

TEST(InsertedRows, NoMoreThanAHundredAreHeldUntilOneIsForgotten) {
  CREP_ORA8 benchmark;
  for (long nRow = 1001; nRow <= 1100; ++nRow) EXPECT_EQ(benchmark.RecordRow(1, nRow), 1) << nRow;
  EXPECT_EQ(benchmark.RecordRow(1, 1101), 0);
  EXPECT_EQ(benchmark.m_MapTableNumToRowID.GetCount(), 100);
  benchmark.ForgetRow(1, 1001);
  EXPECT_EQ(benchmark.RecordRow(1, 1101), 1);
  EXPECT_EQ(benchmark.m_MapTableNumToRowID.GetCount(), 100);
}

TEST(InsertedRows, AFullMapDoesNotReplaceEither) {
  CREP_ORA8 benchmark;
  for (long nRow = 1001; nRow <= 1100; ++nRow) benchmark.RecordRow(1, nRow);
  EXPECT_EQ(benchmark.RecordRow(2, 1001), 0);  // the key of table 1, row 1002
  long nRow = 0;
  EXPECT_EQ(benchmark.m_MapTableNumToRowID.Lookup(1003, nRow), 1);
  EXPECT_EQ(nRow, 1002);
}

TEST(InsertedRows, ForgettingAMissingRowChangesNothing) {
  CREP_ORA8 benchmark;
  benchmark.RecordRow(1, 1001);
  benchmark.ForgetRow(1, 1002);
  EXPECT_EQ(benchmark.m_MapTableNumToRowID.GetCount(), 1);
}

TEST(InsertedRows, ManyUsersKeepTheBoundTogether) {
  CREP_ORA8 benchmark;
  const auto work = [&benchmark](long nTable) {
    for (long nRow = 1; nRow <= 2000; ++nRow) {
      benchmark.RecordRow(nTable, 10000 * nTable + nRow);
      long nTaken = 0;
      long nTakenRow = 0;
      if (nRow % 2 == 0 && benchmark.TakeFirstRow(nTaken, nTakenRow)) benchmark.ForgetRow(nTaken, nTakenRow);
    }
  };
  {
    std::vector<std::jthread> users;
    for (long nTable = 1; nTable <= 4; ++nTable) users.emplace_back(work, nTable);
  }
  EXPECT_LE(benchmark.m_MapTableNumToRowID.GetCount(), 100);
  EXPECT_FALSE(benchmark.m_MapTableNumToRowID.IsEmpty());
}

class AnyTransaction : public plugin_test::SchemaTest {
 protected:
  AnyTransaction() {
    SetTables(2);
    m_benchmark.RegisterTransactions(1);
  }
  // Every registered transaction, bound to the given driver.
  template <class Action>
  void ForEach(CDriverBase* pDriver, Action action) {
    for (int i = 0; i < m_benchmark.GetXactCount(); ++i) {
      CXact& xact = *m_benchmark.GetXact(i);
      Bind(xact);
      xact.SetUserID(1);
      xact.SetDriver(pDriver);
      action(xact);
    }
  }
  // These two use the driver as it is.
  static bool ChecksItsDriver(const CXact& xact) {
    const std::string name = ClassName(xact);
    return name != "CXact_Create_RepTables" && name != "CXact_Drop_Replication_Properties_Table";
  }
  static bool OverridesPreBenchmark(const CXact& xact) {
    static const std::set<std::string> names = {"CXact_LoadTable_ORA8", "CREP_RefreshTable_ORA8",
                                                "CXact_Insert", "CXact_Update", "CXact_Delete"};
    return names.contains(ClassName(xact));
  }
};

TEST_F(AnyTransaction, WithoutAnOracleDriverReturnsZeroWithoutACall) {
  scripted::ForeignDriver foreign;
  for (CDriverBase* pDriver : {static_cast<CDriverBase*>(nullptr), static_cast<CDriverBase*>(&foreign)})
    ForEach(pDriver, [](CXact& xact) {
      if (ChecksItsDriver(xact)) {
        EXPECT_EQ(xact.Execute(), 0) << ClassName(xact);
      }
      if (OverridesPreBenchmark(xact)) {
        EXPECT_EQ(xact.PreBenchmark(), 0) << ClassName(xact);
      }
    });
  EXPECT_THAT(scripted::Oci().Calls(), testing::IsEmpty());
}

TEST_F(AnyTransaction, OnlyTwoUseTheDriverUnchecked) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  ForEach(nullptr, [](CXact& xact) {
    if (!ChecksItsDriver(xact)) {
      EXPECT_DEATH(xact.Execute(), "") << ClassName(xact);
    }
  });
}

TEST_F(AnyTransaction, EndsAndBeginsARunWithoutForgettingTheInsertedRows) {
  m_benchmark.RecordRow(2, 1001);
  ForEach(&m_driver, [](CXact& xact) {
    xact.PreBenchmark();
    xact.PreIteration();
    xact.PostBenchmark();
  });
  EXPECT_EQ(m_benchmark.RegisterTransactions(0), 1);
  EXPECT_EQ(m_benchmark.m_MapTableNumToRowID.GetCount(), 1);
}

TEST_F(AnyTransaction, OfTheSetUpLeavesTheInsertedRowsAlone) {
  SetColumns({Column(L"NUMBER", 1, false)});
  SetColumnNumbers(1, 1);
  for (const char* szTable : {"LK_REP_TABLE1", "LK_REP_TABLE2"})
    scripted::Oci().Describe(std::string("SELECT * FROM ") + szTable, {{"ID"}});
  scripted::Oci().Refuse("DROP TABLE LK_REP_TABLE3", 942);  // where the drop ends
  m_benchmark.RecordRow(2, 1001);
  ForEach(&m_driver, [](CXact& xact) {
    if (xact.GetTransactionType() == UNKNOWN) return;  // the workload
    EXPECT_EQ(xact.PreBenchmark(), 1) << ClassName(xact);
    EXPECT_EQ(xact.PreIteration(), 1) << ClassName(xact);
    EXPECT_EQ(xact.Execute(), ClassName(xact) == "CXact_Drop_RepTables" ? 0 : 1) << ClassName(xact);
    EXPECT_EQ(xact.PostBenchmark(), 1) << ClassName(xact);
  });
  EXPECT_EQ(m_benchmark.m_MapTableNumToRowID.GetCount(), 1);
}

TEST_F(AnyTransaction, DoPostAndDoDeleteAnswer405AndTheOtherDefaultsHold) {
  ForEach(nullptr, [](CXact& xact) {
    LKString szResponse;
    EXPECT_EQ(xact.DoPost(Context{}, szResponse), 405) << ClassName(xact);
    EXPECT_EQ(xact.DoDelete(Context{}, szResponse), 405) << ClassName(xact);
    EXPECT_EQ(xact.IsValid(), 1) << ClassName(xact);
    EXPECT_EQ(xact.Apply(), 1) << ClassName(xact);
  });
}

TEST_F(AnyTransaction, OnlyTheTableCreationShowsItsSql) {
  SetColumns({Column(L"NUMBER", 1, false)});
  SetColumnNumbers(1, 1);
  ForEach(&m_driver, [](CXact& xact) {
    const bool bCreatesTables = ClassName(xact) == "CXact_Create_RepTables";
    EXPECT_TRUE(xact.GetExecuteSQL().IsEmpty()) << ClassName(xact);
    if (!bCreatesTables) return;
    EXPECT_EQ(xact.Execute(), 1);
    EXPECT_FALSE(xact.GetExecuteSQL().IsEmpty());
  });
}

}  // namespace
