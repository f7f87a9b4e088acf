// SPDX-License-Identifier: Apache-2.0
// Everything a loader and its binds do to the database, in order, and every call that can fail.
#include <memory>

#include "Benchmarks/CREP_ORA8/RepTable.h"
#include "Benchmarks/CREP_ORA8/TableLoader.h"
#include "CallLists.h"
#include "DescribedTable.h"

namespace scripted {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// OCI calls 1 to 8.
const Events kBind = {
    "OCIHandleAlloc(env#1, 4, 0, null)",
    "OCIStmtPrepare(stmt#2, err#1, \"INSERT INTO T (ID, COLUMN1, COLUMN2) VALUES (:ID, :COLUMN1, "
    "TO_DATE(:COLUMN2, 'YYYY/MM/DD HH24:MI:SS'))\", 103, 1, 0)",
    "OCIBindByPos(stmt#2, err#1, 1, &, 8, 4, &, null, null, 0, null, 0)",
    "OCIBindArrayOfStruct(bind#1, err#1, 8, 0, 0, 0)",
    "OCIBindByPos(stmt#2, err#1, 2, &, 21, 5, &, null, null, 0, null, 0)",
    "OCIBindArrayOfStruct(bind#2, err#1, 21, 0, 0, 0)",
    "OCIBindByPos(stmt#2, err#1, 3, &, 35, 5, &, null, null, 0, null, 0)",
    "OCIBindArrayOfStruct(bind#3, err#1, 35, 0, 0, 0)"};
const Events kSuccess = Together({kBind, {"returned 1"}});
const Events kFree = {"OCIHandleFree(stmt#2, 4)"};

class LoaderCalls : public JournalTest {
 protected:
  LoaderCalls() {
    DescribeTable("T", {IdColumn(), TextColumn("COLUMN1", 20), DateColumn("COLUMN2")});
    m_pTable = std::make_unique<CRepTable>(&m_driver, L"T");
    EXPECT_EQ(m_pTable->Initialize(), 1);
    m_pLoader.reset(m_pTable->CreateLoader(3));
  }
  Events BindColumns() {
    return m_journal.Run([this] { return m_pLoader->BindColumns(); });
  }
  Events SendRows(int nRows) {
    return m_journal.Run([=, this] { return m_pLoader->SendRows(nRows); });
  }
  Events Destroy() {
    m_journal.Clear();
    m_pLoader.reset();
    return m_journal.All();
  }
  // Binds and fills that many rows.
  void Fill(int nRows) {
    EXPECT_EQ(m_pLoader->BindColumns(), 1);
    for (int nRow = 1; nRow <= nRows; ++nRow) m_pLoader->MakeRecord(nRow);
  }
  static auto Assert(const std::string& condition) {
    return AssertIn("TableLoader.cpp", "SendRows", condition);
  }

  std::unique_ptr<CRepTable> m_pTable;
  std::unique_ptr<CTableLoader> m_pLoader;  // goes before the table
};

TEST_F(LoaderCalls, OfBindingPrepareTheInsertAndBindByPosition) {
  EXPECT_EQ(BindColumns(), kSuccess);
  EXPECT_EQ(ExtraHandles(), 2);
  EXPECT_EQ(Destroy(), kFree);
}

TEST_F(LoaderCalls, OfALoaderThatWasNeverBoundAreNone) { EXPECT_THAT(Destroy(), IsEmpty()); }

TEST_F(LoaderCalls, OfANewStatementAreItsAllocation) {
  OCIStmt* pStmt = m_pLoader->CreateStatment();
  EXPECT_EQ(Oci().NameOf(pStmt), "stmt#2");
  EXPECT_EQ(m_pLoader->m_pInsertStmt, nullptr);
  OCIHandleFree(pStmt, OCI_HTYPE_STMT);
}

class BindFailures : public LoaderCalls, public testing::WithParamInterface<FailurePath> {};

TEST_P(BindFailures, EndBindingAsListed) {
  Oci().FailAnyCall(GetParam().nCall, StatusFault(kHighStatus));
  EXPECT_EQ(BindColumns(), Together({UpToCall(kSuccess, GetParam().nCall), GetParam().tail}));
  EXPECT_EQ(ExtraHandles(), GetParam().nHandles);
  EXPECT_EQ(Destroy(), GetParam().nHandles == 2 ? kFree : Events());
}

INSTANTIATE_TEST_SUITE_P(
    BindColumns, BindFailures,
    testing::ValuesIn(
        EachCall({{"Handle", 1, 1,
                   Together({Reported(kHighStatus, "Unable create statement handle for TableLoader!"),
                             {"returned 0"}}),
                   1},
                  {"PrepareOrBind", 2, 8, {"returned 0"}, 2}})),
    NameOfPath);

TEST_F(LoaderCalls, OfABatchAreOneExecuteThatCommits) {
  Fill(2);
  EXPECT_EQ(SendRows(2),
            Events({"OCIStmtExecute(svc#1, stmt#2, err#1, 2, 0, null, null, 32)", "returned 1"}));
  EXPECT_EQ(m_pLoader->m_nNumberOfRows, 0);
}

TEST_F(LoaderCalls, OfABatchThatIsNotToCommitHaveModeZero) {
  Fill(1);
  m_pLoader->m_nCommitMode = OCI_DEFAULT;
  EXPECT_EQ(SendRows(1), Events({"OCIStmtExecute(svc#1, stmt#2, err#1, 1, 0, null, null, 0)", "returned 1"}));
}

TEST_F(LoaderCalls, OfAFailedBatchReportTheWholeStatusAndKeepTheRowCount) {
  Fill(2);
  Oci().FailAnyCall(1, StatusFault(kHighStatus));
  EXPECT_EQ(SendRows(2), Together({{"OCIStmtExecute(svc#1, stmt#2, err#1, 2, 0, null, null, 32)"},
                                   Reported(kHighStatus),
                                   {"returned 0"}}));
  EXPECT_EQ(m_pLoader->m_nNumberOfRows, 2);
}

TEST_F(LoaderCalls, AreThoseOfASuccessWithStatusesWhoseLowBitsAreZero) {
  ReturnHighBitsOnly();
  EXPECT_EQ(BindColumns(), kSuccess);
  m_pLoader->MakeRecord(1);
  EXPECT_EQ(SendRows(1),
            Events({"OCIStmtExecute(svc#1, stmt#2, err#1, 1, 0, null, null, 32)", "returned 1"}));
  EXPECT_EQ(m_pLoader->m_nNumberOfRows, 0);
}

TEST_F(LoaderCalls, OfOtherRowsThanAreFilledAreNone) {
  Fill(2);
  const auto range = Assert("nRows >= 1 && nRows <= m_nRowsPerCommit");
  const auto filled = Assert("nRows == m_nNumberOfRows");
  for (const int nRows : {0, -1, 4}) EXPECT_THAT(SendRows(nRows), ElementsAre(range, filled, "returned 0"));
  for (const int nRows : {1, 3}) EXPECT_THAT(SendRows(nRows), ElementsAre(filled, "returned 0"));
  EXPECT_EQ(m_pLoader->m_nNumberOfRows, 2);
}

TEST_F(LoaderCalls, OfMoreRowsThanTheArraysHoldAreNoneThoughAllWereFilled) {
  Fill(4);
  EXPECT_THAT(SendRows(4), ElementsAre(Assert("nRows >= 1 && nRows <= m_nRowsPerCommit"), "returned 0"));
}

TEST_F(LoaderCalls, OfNoRowsAreNoneThoughNoneWereFilled) {
  Fill(0);
  EXPECT_THAT(SendRows(0), ElementsAre(Assert("nRows >= 1 && nRows <= m_nRowsPerCommit"), "returned 0"));
}

TEST_F(LoaderCalls, WithoutAnInsertAreReportedTwice) {
  m_pLoader->MakeRecord(1);
  EXPECT_THAT(SendRows(1), ElementsAre(Assert("m_pInsertStmt != __null"),
                                       "OCIStmtExecute(svc#1, null, err#1, 1, 0, null, null, 32)",
                                       "HandleError(-2, err#1, 0, 0)", "reported ERROR -1", "returned 0"));
}

TEST_F(LoaderCalls, OfABindWithoutAStatementAreNone) {
  IBind* pBind = m_pLoader->GetBindArray()[0];
  EXPECT_THAT(m_journal.Run([&] { return pBind->BindColumn(nullptr, m_driver.GetOCIError()); }),
              ElementsAre(AssertIn("Bind.h", "BindColumn", "pStmt != __null"), "returned 0"));
}

}  // namespace
}  // namespace scripted
