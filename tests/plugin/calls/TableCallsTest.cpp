// SPDX-License-Identifier: Apache-2.0
// Everything a table does to learn its columns and to give its describe back, and every call that can fail.
#include <memory>

#include "Benchmarks/CREP_ORA8/RepTable.h"
#include "Benchmarks/CREP_ORA8/TableLoader.h"
#include "IdTable.h"

namespace scripted {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const IdTable kTable("T", 1);  // the calls of a description with an ID alone; OCI calls 1 to 11
const Events kSuccess = Together({kTable.Describe(), {"returned 1"}});

class TableCalls : public JournalTest {
 protected:
  TableCalls() {
    DescribeTable("T", {IdColumn()});
    m_pTable = std::make_unique<CRepTable>(&m_driver, L"T");
  }
  Events Initialize() {
    return m_journal.Run([this] { return m_pTable->Initialize(); });
  }
  Events Destroy() {
    m_journal.Clear();
    m_pTable.reset();
    return m_journal.All();
  }

  std::unique_ptr<CRepTable> m_pTable;
};

TEST_F(TableCalls, AreADescribeThatIsNotRunAndItsColumns) {
  EXPECT_EQ(Initialize(), kSuccess);
  EXPECT_EQ(ExtraHandles(), 1);  // the describe stays as long as the table
  EXPECT_EQ(Destroy(), Events({kTable.FreeTable()}));
}

TEST_F(TableCalls, OfATableThatWasNeverDescribedAreNone) { EXPECT_THAT(Destroy(), IsEmpty()); }

TEST_F(TableCalls, WithoutADriverAreNone) {
  m_pTable->SetDriver(nullptr);
  EXPECT_THAT(Initialize(),
              ElementsAre(AssertIn("RepTable.cpp", "Initialize", "m_pDriver != __null"), "returned 0"));
}

TEST_F(TableCalls, AreNoneForMakingALoader) {
  Initialize();
  m_journal.Clear();
  const std::unique_ptr<CTableLoader> pLoader(m_pTable->CreateLoader(7));
  pLoader->SetStartingRows(5);
  pLoader->SetTotalRows(9);
  pLoader->MakeRecord(5);
  EXPECT_THAT(m_journal.All(), IsEmpty());
}

class TableFailures : public TableCalls, public testing::WithParamInterface<FailurePath> {};

TEST_P(TableFailures, EndInitializeAsListed) {
  Oci().FailAnyCall(GetParam().nCall, StatusFault(kHighStatus));
  EXPECT_EQ(Initialize(), Together({UpToCall(kSuccess, GetParam().nCall), GetParam().tail}));
  EXPECT_EQ(ExtraHandles(), GetParam().nHandles);
  EXPECT_EQ(m_pTable->m_pStmt != nullptr, GetParam().nHandles == 1);
  EXPECT_EQ(Destroy(), GetParam().nHandles == 1 ? Events({kTable.FreeTable()}) : Events());
}

INSTANTIATE_TEST_SUITE_P(
    Initialize, TableFailures,
    testing::ValuesIn(EachCall(
        {{"Handle", 1, 1, {"HandleErrorMsg(\"Unable allocate statement handle!\")", "returned 0"}, 0},
         {"Prepare", 2, 2,
          Together({Reported(kHighStatus, "Unable Prepare statement while Initialize."),
                    {kTable.FreeTable(), "returned 0"}}),
          0},
         {"Describe", 3, 3,
          Together({Reported(kHighStatus, "Unable Describe table while Initialize!"),
                    {kTable.FreeTable(), "returned 0"}}),
          0},
         // kept: the describe stays after this one
         {"Columns", 4, 11, Together({Reported(-1, "Unable to initialize columns"), {"returned 0"}}), 1}})),
    NameOfPath);

TEST_F(TableCalls, AreThoseOfASuccessWithStatusesWhoseLowBitsAreZero) {
  ReturnHighBitsOnly();
  EXPECT_EQ(Initialize(), kSuccess);
}

// A column of each kind on its own, its attributes read so far.
class ColumnCalls : public TableCalls {
 protected:
  Events InitializeColumn(CColumn& column) {
    return m_journal.Run([&] { return column.Initialize(); });
  }
  // Describes T anew, so that its statement can be used for a column.
  OCIStmt* Described(const ColumnSpec& spec) {
    DescribeTable("T", {spec});
    EXPECT_EQ(m_pTable->Initialize(), 1);
    return m_pTable->m_pStmt;
  }
};

TEST_F(ColumnCalls, OfANumberReadSixAttributesAndOfATextFour) {
  const Events number = {"OCIParamGet(stmt#1, 4, err#1, 1)",      "OCIAttrGet(par#2, 53, &, 4, err#1)",
                         "OCIAttrGet(par#2, 53, null, 2, err#1)", "OCIAttrGet(par#2, 53, null, 1, err#1)",
                         "OCIAttrGet(par#2, 53, null, 7, err#1)", "OCIAttrGet(par#2, 53, null, 5, err#1)",
                         "OCIAttrGet(par#2, 53, null, 6, err#1)", "returned 1"};
  CColumn column(Described(NumberColumn("AMOUNT", 10, 2, 1)), m_driver.GetOCIError(), 1);
  EXPECT_EQ(InitializeColumn(column), number);
  EXPECT_EQ(Oci().Live(OCI_DTYPE_PARAM), 2);  // kept: parameters are not freed
}

TEST_F(ColumnCalls, OfATextLeaveOutPrecisionAndScale) {
  CColumn column(Described(TextColumn("NAME", 20)), m_driver.GetOCIError(), 1);
  EXPECT_EQ(InitializeColumn(column),
            Events({"OCIParamGet(stmt#1, 4, err#1, 1)", "OCIAttrGet(par#2, 53, &, 4, err#1)",
                    "OCIAttrGet(par#2, 53, null, 2, err#1)", "OCIAttrGet(par#2, 53, null, 1, err#1)",
                    "OCIAttrGet(par#2, 53, null, 7, err#1)", "returned 1"}));
}

TEST_F(ColumnCalls, ThatFailEndTheColumnSilentlyWithWhatWasReadBefore) {
  OCIStmt* pStmt = Described(NumberColumn("AMOUNT", 10, 2, 1));
  for (int nCall = 1; nCall <= 7; ++nCall) {
    CColumn column(pStmt, m_driver.GetOCIError(), 1);
    Oci().FailAnyCall(nCall, StatusFault(kHighStatus));
    const Events events = InitializeColumn(column);
    EXPECT_EQ(events.size(), static_cast<size_t>(nCall) + 1) << nCall;
    EXPECT_EQ(events.back(), "returned 0") << nCall;
    EXPECT_EQ(column.GetName(), LKString(nCall > 2 ? L"AMOUNT" : L"")) << nCall;
    EXPECT_EQ(column.GetDataType(), nCall > 3 ? SQLT_NUM : 0) << nCall;
    EXPECT_EQ(column.GetSize(), nCall > 4 ? 22 : 0) << nCall;
    EXPECT_EQ(column.IsNullable(), nCall > 5) << nCall;
    EXPECT_EQ(column.GetPrecision(), nCall > 6 ? 10 : 0) << nCall;
    EXPECT_EQ(column.GetScale(), 0) << nCall;
  }
}

}  // namespace
}  // namespace scripted
