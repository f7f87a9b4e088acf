// SPDX-License-Identifier: Apache-2.0
// What the update and the delete have in common: a statement handle of their own that literal texts run on,
// and nothing to do for a benchmark of another kind.
#include <gmock/gmock.h>

#include "Benchmarks/CREP_ORA8/Xact_Delete.h"
#include "Benchmarks/CREP_ORA8/Xact_Update.h"
#include "WorkloadFixture.h"

namespace scripted {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

template <class Transaction>
struct Facts;

template <>
struct Facts<CXact_Update> {
  static constexpr const wchar_t* kName = L"Update Transaction";
  static constexpr const wchar_t* kDescription = L"Replication benchmark update transaction";
  static constexpr int kXactID = 141;
  static constexpr const char* kAllocMessage = "Unable statement handle in Update Transaction!";
  static constexpr const char* kPrepareMessage = "Unable to prepare statement for update transaction.";
  static constexpr const char* kNoTables =
      "Benchmarks/CREP_ORA8/Xact_Update.cpp:60 PreBenchmark: m_nNumberOfTables > 0";
  static constexpr const char* kVerb = "update";
  static constexpr int kPrepares = 3;  // the describe's, the loader's, its own
  static OCIStmt* StatementOf(const CXact_Update& xact) { return xact.m_pUpdateStmt; }
};

template <>
struct Facts<CXact_Delete> {
  static constexpr const wchar_t* kName = L"Delete Transaction";
  static constexpr const wchar_t* kDescription = L"Replication benchmark delete transaction";
  static constexpr int kXactID = 151;
  static constexpr const char* kAllocMessage = "Unable statement handle in Delete Transaction!";
  static constexpr const char* kPrepareMessage = "Unable to prepare statement for delete transaction.";
  static constexpr const char* kNoTables =
      "Benchmarks/CREP_ORA8/Xact_Delete.cpp:60 PreBenchmark: m_nNumberOfTables > 0";
  static constexpr const char* kVerb = "delete";
  static constexpr int kPrepares = 1;
  static OCIStmt* StatementOf(const CXact_Delete& xact) { return xact.m_pDeleteStmt; }
};

template <class Transaction>
class LiteralXact : public WorkloadTest<Transaction> {
 protected:
  void ExpectOneReport(const char* szStart) const {
    ASSERT_THAT(this->m_reports.Errors(), SizeIs(1));
    EXPECT_THAT(this->m_reports.Errors()[0].m_szErrorMessage.ToChar(), StartsWith(szStart));
  }
};

using Transactions = testing::Types<CXact_Update, CXact_Delete>;
TYPED_TEST_SUITE(LiteralXact, Transactions);

TYPED_TEST(LiteralXact, CarriesItsIdentity) {
  EXPECT_STREQ(this->m_xact.GetName(), Facts<TypeParam>::kName);
  EXPECT_STREQ(this->m_xact.GetDescription(), Facts<TypeParam>::kDescription);
  EXPECT_EQ(this->m_xact.GetXactID(), Facts<TypeParam>::kXactID);
}

TYPED_TEST(LiteralXact, PreBenchmarkAllocatesAndPreparesNothing) {
  ASSERT_EQ(this->m_xact.PreBenchmark(), 1);
  EXPECT_THAT(Oci().Calls(), ElementsAre("OCIHandleAlloc(env#1, 4, 0, null)"));
}

TYPED_TEST(LiteralXact, FailedAllocationReturns0WithItsMessage) {
  Oci().FailCall("OCIHandleAlloc", 1, {OCI_ERROR});
  EXPECT_EQ(this->m_xact.PreBenchmark(), 0);
  this->ExpectOneReport(Facts<TypeParam>::kAllocMessage);
}

TYPED_TEST(LiteralXact, WithoutTablesTheAssertionNamesLine60) {
  this->SetSettings(0, 1.0);
  EXPECT_EQ(this->m_xact.PreBenchmark(), 1);
  EXPECT_THAT(this->m_asserts.Texts(), ElementsAre(Facts<TypeParam>::kNoTables));
}

TYPED_TEST(LiteralXact, AFailedPrepareIsReportedWithItsMessageAndLeavesTheTimerRunning) {
  this->Start();
  Oci().FailCall("OCIStmtPrepare", Facts<TypeParam>::kPrepares, OraFault(900));
  EXPECT_EQ(this->m_xact.Execute(), 0);
  this->ExpectOneReport(Facts<TypeParam>::kPrepareMessage);
  EXPECT_TRUE(this->m_xact.GetTimer().IsStarted());
  EXPECT_FALSE(this->m_xact.GetTimer().IsEnded());
}

TYPED_TEST(LiteralXact, AFailedExecuteIsTheDriversReport) {
  this->Start();
  Oci().FailSql(Facts<TypeParam>::kVerb, 1, OraFault(60, "deadlock detected"));
  EXPECT_EQ(this->m_xact.Execute(), 0);
  ASSERT_THAT(this->m_reports.Errors(), SizeIs(1));
  EXPECT_EQ(this->m_reports.Errors()[0].m_szErrorNumber.ToChar(), "60");
  EXPECT_FALSE(this->m_xact.GetTimer().IsEnded());
}

TYPED_TEST(LiteralXact, ABenchmarkOfAnotherKindEndsTheTimerAndSucceeds) {
  CSSBenchmark other;
  this->m_xact.SetBenchmark(&other);
  this->Start();
  EXPECT_EQ(this->m_xact.Execute(), 1);
  EXPECT_THAT(Oci().Calls(), IsEmpty());
  EXPECT_TRUE(this->m_xact.GetTimer().IsEnded());
  EXPECT_EQ(this->m_xact.GetTimer().GetRows(), 0);
}

TYPED_TEST(LiteralXact, PostBenchmarkFreesTheHandleAndMakesItNull) {
  this->Start();
  EXPECT_EQ(this->m_xact.PostBenchmark(), 1);
  EXPECT_EQ(Facts<TypeParam>::StatementOf(this->m_xact), nullptr);
  EXPECT_THAT(Oci().Calls(), ElementsAre("OCIHandleFree(stmt#1, 4)"));
}

}  // namespace
}  // namespace scripted
