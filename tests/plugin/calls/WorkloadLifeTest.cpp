// SPDX-License-Identifier: Apache-2.0
// What the three transactions of the workload have in common around their executions.
#include <memory>

#include "Benchmarks/CREP_ORA8/Xact_Delete.h"
#include "Benchmarks/CREP_ORA8/Xact_Insert.h"
#include "Benchmarks/CREP_ORA8/Xact_Update.h"
#include "HostTaps.h"
#include "Recorders.h"
#include "WorkloadCalls.h"

namespace scripted {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

template <class Transaction>
struct Facts;

template <>
struct Facts<CXact_Insert> {
  static constexpr const wchar_t* kName = L"Insert Transaction";
  static constexpr const wchar_t* kDescription = L"Replication benchmark insert transaction";
  static constexpr int kXactID = 131;
  static constexpr int kSeedOffset = 1;
  static constexpr const char* kNoTables =
      "assert Benchmarks/CREP_ORA8/Xact_Insert.cpp:62 PreBenchmark: m_nNumberOfTables > 0";
};

template <>
struct Facts<CXact_Update> {
  static constexpr const wchar_t* kName = L"Update Transaction";
  static constexpr const wchar_t* kDescription = L"Replication benchmark update transaction";
  static constexpr int kXactID = 141;
  static constexpr int kSeedOffset = 2;
  static constexpr const char* kNoTables =
      "assert Benchmarks/CREP_ORA8/Xact_Update.cpp:60 PreBenchmark: m_nNumberOfTables > 0";
};

template <>
struct Facts<CXact_Delete> {
  static constexpr const wchar_t* kName = L"Delete Transaction";
  static constexpr const wchar_t* kDescription = L"Replication benchmark delete transaction";
  static constexpr int kXactID = 151;
  static constexpr int kSeedOffset = 3;
  static constexpr const char* kNoTables =
      "assert Benchmarks/CREP_ORA8/Xact_Delete.cpp:60 PreBenchmark: m_nNumberOfTables > 0";
};

template <class Transaction>
class Workload : public WorkloadCalls<Transaction> {};

using Transactions = testing::Types<CXact_Insert, CXact_Update, CXact_Delete>;
TYPED_TEST_SUITE(Workload, Transactions);

TYPED_TEST(Workload, WithoutAnOracleDriverTouchesNeitherOciNorTheTimer) {
  ForeignDriver foreign;
  for (CDriverBase* pDriver : {static_cast<CDriverBase*>(nullptr), static_cast<CDriverBase*>(&foreign)}) {
    this->m_xact.SetDriver(pDriver);
    EXPECT_EQ(this->PreBenchmark(), Events({"returned 0"}));
    EXPECT_EQ(this->Execute(), Events({"returned 0"}));
  }
}

TYPED_TEST(Workload, IterationsAreTheHosts) {
  this->Start();
  const HostReturns seven(7);
  EXPECT_EQ(this->PreIteration(), Events({"CXact::PreIteration()", "returned 7"}));
}

TYPED_TEST(Workload, PostBenchmarkReturnsWhatTheHostsDoes) {
  const HostReturns seven(7);
  EXPECT_EQ(this->PostBenchmark(), Events({"CXact::PostBenchmark()", "returned 7"}));
}

TYPED_TEST(Workload, PreBenchmarkDoesNotAskTheHosts) {
  const HostReturns seven(7);
  const Events events = this->PreBenchmark();
  EXPECT_EQ(events.back(), "returned 1");
  EXPECT_THAT(events, testing::Not(testing::Contains("CXact::PreBenchmark()")));
}

TYPED_TEST(Workload, NoDebugLineIsMadeWhereTheLevelOrTheThreadAdmitsNone) {
  this->Start();
  LogRecorder log;
  wxLog::SetLogLevel(wxLOG_Info);
  EXPECT_EQ(this->m_xact.Execute(), 1);
  wxLog::SetLogLevel(wxLOG_Debug);
  {
    const wxLogNull quiet;
    EXPECT_EQ(this->m_xact.Execute(), 1);
  }
  EXPECT_THAT(log.Texts(), IsEmpty());
  EXPECT_EQ(this->m_xact.Execute(), 1);
  EXPECT_THAT(log.Texts(), SizeIs(1));
}

TYPED_TEST(Workload, WithoutABenchmarkSucceeds) {
  this->m_xact.SetBenchmark(nullptr);
  this->Start();
  EXPECT_EQ(this->Execute().back(), "returned 1");
  EXPECT_TRUE(this->m_xact.GetTimer().IsEnded());
}

TYPED_TEST(Workload, FailedAllocationLeavesNoHandleAndTheNextPreBenchmarkTriesAgain) {
  Oci().FailCall("OCIHandleAlloc", 1, {OCI_ERROR});
  EXPECT_EQ(this->m_xact.PreBenchmark(), 0);
  EXPECT_EQ(this->ExtraHandles(), 0);
  EXPECT_EQ(this->m_xact.PreBenchmark(), 1);
  EXPECT_EQ(this->ExtraHandles(), 1);
}

TYPED_TEST(Workload, SecondPostBenchmarkFreesNothing) {
  this->Start();
  EXPECT_EQ(this->PostBenchmark(),
            Events({"OCIHandleFree(stmt#1, 4)", "CXact::PostBenchmark()", "returned 1"}));
  EXPECT_EQ(this->PostBenchmark(), Events({"CXact::PostBenchmark()", "returned 1"}));
}

TYPED_TEST(Workload, CleanupFreesTheHandleOnlyOnce) {
  this->Start();
  this->m_journal.Clear();
  this->m_xact.Cleanup();
  this->m_xact.Cleanup();
  EXPECT_EQ(this->m_journal.All(), Events({"OCIHandleFree(stmt#1, 4)"}));
}

TYPED_TEST(Workload, DestructorLeavesTheHandleToPostBenchmark) {
  auto pXact = std::make_unique<TypeParam>();
  pXact->SetDriver(&this->m_driver);
  pXact->SetBenchmarkProperties(this->m_xact.GetBenchmarkProperties());
  ASSERT_EQ(pXact->PreBenchmark(), 1);
  this->m_journal.Clear();
  pXact.reset();
  EXPECT_THAT(this->m_journal.All(), IsEmpty());
  EXPECT_EQ(this->ExtraHandles(), 1);
}

TYPED_TEST(Workload, CarriesItsIdentityAndTheHostsTransactionType) {
  EXPECT_STREQ(this->m_xact.GetName(), Facts<TypeParam>::kName);
  EXPECT_STREQ(this->m_xact.GetDescription(), Facts<TypeParam>::kDescription);
  EXPECT_EQ(this->m_xact.GetXactID(), Facts<TypeParam>::kXactID);
  EXPECT_EQ(this->m_xact.GetTransactionType(), UNKNOWN);
}

TYPED_TEST(Workload, WithoutTablesTheAssertionReportsAndPreBenchmarkGoesOn) {
  this->SetSettings(0, 1.0);
  const Events events = this->PreBenchmark();
  EXPECT_EQ(events.front(), Facts<TypeParam>::kNoTables);
  EXPECT_EQ(events[1], "OCIHandleAlloc(env#1, 4, 0, null)");
  EXPECT_EQ(events.back(), "returned 1");
}

TYPED_TEST(Workload, WithoutADriverTheTablesAreCountedAllTheSame) {
  this->m_xact.SetDriver(nullptr);
  this->SetSettings(0, 1.0);
  EXPECT_EQ(this->PreBenchmark(), Events({Facts<TypeParam>::kNoTables, "returned 0"}));
  this->SetSettings(5, 1.0);
  EXPECT_EQ(this->PreBenchmark(), Events({"returned 0"}));
  EXPECT_EQ(this->m_xact.m_nNumberOfTables, 5);
}

TYPED_TEST(Workload, PreBenchmarkSeedsTheStreamAnew) {
  for (int i = 0; i < 2; ++i) {
    ASSERT_EQ(this->m_xact.PreBenchmark(), 1);
    CRandom random;
    random.Seed(kUser + Facts<TypeParam>::kSeedOffset);
    EXPECT_EQ(this->m_xact.GetRandomGenerator().GetRandomInt(1, 1000000), random.GetRandomInt(1, 1000000));
  }
}

TYPED_TEST(Workload, UnfitSpecifiersNeverOccur) {
  this->Start();
  for (int i = 0; i < 20; ++i) EXPECT_EQ(this->m_xact.Execute(), 1);
  EXPECT_THAT(this->m_asserts.Texts(), IsEmpty());
}

}  // namespace
}  // namespace scripted
