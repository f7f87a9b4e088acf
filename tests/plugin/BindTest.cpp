// SPDX-License-Identifier: Apache-2.0
// Array binds: which one a column gets, how it is bound, what a row leaves in the arrays.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "Benchmarks/CREP_ORA8/Bind.h"
#include "ConnectedDriver.h"
#include "DescribedTable.h"

// A refused allocation is an answer here, also under the sanitizers.
extern "C" const char* __asan_default_options() { return "allocator_may_return_null=1"; }
extern "C" const char* __tsan_default_options() { return "allocator_may_return_null=1"; }

namespace {

using scripted::ColumnOf;
using scripted::ColumnSpec;
using scripted::DateColumn;
using scripted::IdColumn;
using scripted::NumberColumn;
using scripted::Oci;
using scripted::OraFault;
using scripted::TextColumn;
using testing::ElementsAre;
using testing::IsEmpty;

using NumberBind = CBind<double, SQLT_FLT>;
using TextBind = CStrBind<char>;

class Binds : public scripted::ConnectedDriver<> {
 protected:
  Binds() {
    void* pStmt = nullptr;
    OCIHandleAlloc(m_driver.GetOCIEnvironment(), &pStmt, OCI_HTYPE_STMT, 0, nullptr);
    m_pStmt = static_cast<OCIStmt*>(pStmt);
    Oci().ClearCalls();
  }
  ~Binds() override { OCIHandleFree(m_pStmt, OCI_HTYPE_STMT); }

  template <class Bind>
  static std::unique_ptr<Bind> Create(CColumn& column, unsigned int nMaxRows) {
    std::unique_ptr<IBind> bind(column.CreateBind(nMaxRows));
    auto* pBind = dynamic_cast<Bind*>(bind.get());
    if (pBind == nullptr) throw std::runtime_error("the column got another bind");
    bind.release();
    return std::unique_ptr<Bind>(pBind);
  }

  OCIStmt* m_pStmt = nullptr;
};

int Set(IBind& bind, long iRow, double fValue, int nLen = 8) { return bind.SetData(iRow, &fValue, nLen); }
int Set(IBind& bind, long iRow, std::string text) {
  return bind.SetData(iRow, text.data(), static_cast<int>(text.size()));
}

TEST_F(Binds, ANumberATextAndADateAreBoundWithTheirWidthsAndTypes) {
  CColumn id = ColumnOf(IdColumn(), 1);
  CColumn name = ColumnOf(TextColumn("NAME", 20), 2);
  CColumn born = ColumnOf(DateColumn("BORN"), 3);
  const auto pID = Create<NumberBind>(id, 50);
  const auto pName = Create<TextBind>(name, 50);
  const auto pBorn = Create<TextBind>(born, 50);
  EXPECT_EQ(pID->BindColumn(m_pStmt, m_driver.GetOCIError()), 1);
  EXPECT_EQ(pName->BindColumn(m_pStmt, m_driver.GetOCIError()), 1);
  EXPECT_EQ(pBorn->BindColumn(m_pStmt, m_driver.GetOCIError()), 1);
  EXPECT_THAT(Oci().Calls(),
              ElementsAre("OCIBindByPos(stmt#1, err#1, 1, &, 8, 4, &, null, null, 0, null, 0)",
                          "OCIBindArrayOfStruct(bind#1, err#1, 8, 0, 0, 0)",
                          "OCIBindByPos(stmt#1, err#1, 2, &, 21, 5, &, null, null, 0, null, 0)",
                          "OCIBindArrayOfStruct(bind#2, err#1, 21, 0, 0, 0)",
                          "OCIBindByPos(stmt#1, err#1, 3, &, 35, 5, &, null, null, 0, null, 0)",
                          "OCIBindArrayOfStruct(bind#3, err#1, 35, 0, 0, 0)"));
}

TEST_F(Binds, TheDataTypeChoosesTheBind) {
  for (const ub2 nType : {SQLT_NUM, SQLT_INT, SQLT_LNG}) {
    CColumn column = ColumnOf({"C", nType, 22, 0, 0, 0});
    EXPECT_EQ(Create<NumberBind>(column, 1)->GetColumn(), &column) << nType;
  }
  for (const ub2 nType : {SQLT_CHR, SQLT_AFC, SQLT_AVC}) {
    CColumn column = ColumnOf({"C", nType, 10, 0, 0, 0});
    EXPECT_EQ(Create<TextBind>(column, 1)->m_nMaxChar, 11) << nType;
  }
  for (const ub2 nType : {SQLT_DAT, SQLT_TIMESTAMP}) {
    CColumn column = ColumnOf({"C", nType, 11, 0, 0, 0});
    EXPECT_EQ(Create<TextBind>(column, 1)->m_nMaxChar, 35) << nType;
  }
  EXPECT_THAT(m_asserts.Conditions(), IsEmpty());
}

TEST_F(Binds, ADataTypeWithoutABindIsReportedAndGivesNone) {
  for (const ub2 nType : {SQLT_BDOUBLE, SQLT_IBDOUBLE, SQLT_CLOB, SQLT_TIMESTAMP_TZ, SQLT_BIN}) {
    CColumn column = ColumnOf({"C", nType, 11, 0, 0, 0});
    EXPECT_EQ(column.CreateBind(50), nullptr) << nType;
  }
  EXPECT_THAT(m_asserts.Conditions(), ElementsAre("0", "0", "0", "0", "0"));
}

TEST_F(Binds, ArraysStartAsZeros) {
  CColumn column = ColumnOf(TextColumn("NAME", 4));
  const auto pBind = Create<TextBind>(column, 3);
  for (int i = 0; i < 15; ++i) EXPECT_EQ(pBind->m_pData[i], '\0');
  for (int i = 0; i < 3; ++i) EXPECT_EQ(pBind->m_pIndicator[i], 0);
  EXPECT_EQ(pBind->m_nMaxRows, 3U);
  EXPECT_EQ(pBind->m_pBind, nullptr);
}

TEST_F(Binds, InitializingTwiceIsReported) {
  CColumn id = ColumnOf(IdColumn());
  CColumn name = ColumnOf(TextColumn("NAME", 4));
  EXPECT_EQ(Create<NumberBind>(id, 3)->Initialize(), 1);
  EXPECT_EQ(Create<TextBind>(name, 3)->Initialize(), 1);
  EXPECT_THAT(m_asserts.Conditions(), ElementsAre("m_pData == __null", "m_pIndicator == __null",
                                                  "this->m_pData == __null", "this->m_pIndicator == __null"));
}

TEST_F(Binds, AnAllocationThatIsRefusedFailsInitialize) {
  CColumn column = ColumnOf(TextColumn("NAME", 65535));
  TextBind bind(&column, 0xFFFFFFFFU, 65536);  // 256 TB
  EXPECT_EQ(bind.Initialize(), 0);
  EXPECT_EQ(bind.m_pData, nullptr);
  EXPECT_EQ(bind.m_pIndicator, nullptr);
}

// kept: whether the new bind got its arrays is not looked at.
TEST_F(Binds, ABindIsHandedOutAlsoWithoutItsArrays) {
  CColumn column = ColumnOf(TextColumn("NAME", 65535));
  const auto pBind = Create<TextBind>(column, 0xFFFFFFFFU);  // 256 TB
  EXPECT_EQ(pBind->m_pData, nullptr);
  EXPECT_EQ(pBind->m_nMaxRows, 0xFFFFFFFFU);
}

TEST_F(Binds, FieldsStandInTheirOrderWithTheSeedThatNobodyUses) {
  CColumn column = ColumnOf(IdColumn());
  const auto pBind = Create<NumberBind>(column, 1);
  const std::vector<const void*> fields = {&pBind->m_pColumn, &pBind->m_pData,          &pBind->m_pIndicator,
                                           &pBind->m_pBind,   &pBind->m_pDataGenerator, &pBind->m_nSeed,
                                           &pBind->m_nMaxRows};
  EXPECT_TRUE(std::is_sorted(fields.begin(), fields.end()));
}

TEST_F(Binds, WithoutAStatementBindingIsReportedAndFails) {
  CColumn column = ColumnOf(IdColumn());
  EXPECT_EQ(Create<NumberBind>(column, 1)->BindColumn(nullptr, m_driver.GetOCIError()), 0);
  EXPECT_THAT(m_asserts.Conditions(), ElementsAre("pStmt != __null"));
  EXPECT_THAT(Oci().Calls(), IsEmpty());
}

TEST_F(Binds, AFailedCallFailsBindingWithoutAReport) {
  CColumn column = ColumnOf(IdColumn());
  const auto pBind = Create<NumberBind>(column, 1);
  Oci().FailCall("OCIBindByPos", 1, OraFault(1036));
  EXPECT_EQ(pBind->BindColumn(m_pStmt, m_driver.GetOCIError()), 0);
  EXPECT_EQ(Oci().CountCalls("OCIBindArrayOfStruct"), 0);
  Oci().FailCall("OCIBindArrayOfStruct", 1, OraFault(1036));
  EXPECT_EQ(pBind->BindColumn(m_pStmt, m_driver.GetOCIError()), 0);
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
}

TEST_F(Binds, ANumberRowTakesValueAndLength) {
  CColumn column = ColumnOf(IdColumn());
  const auto pBind = Create<NumberBind>(column, 3);
  EXPECT_EQ(Set(*pBind, 1, 12.5), 1);
  EXPECT_EQ(pBind->m_pData[1], 12.5);
  EXPECT_EQ(pBind->m_pIndicator[1], 8);
  EXPECT_EQ(pBind->m_pData[0], 0.0);
  EXPECT_EQ(pBind->m_pIndicator[0], 0);
}

TEST_F(Binds, LengthMinusOneMarksNullAndLeavesTheSlot) {
  CColumn id = ColumnOf(IdColumn());
  const auto pNumber = Create<NumberBind>(id, 2);
  Set(*pNumber, 0, 12.5);
  EXPECT_EQ(Set(*pNumber, 0, 99.0, -1), 1);
  EXPECT_EQ(pNumber->m_pData[0], 12.5);
  EXPECT_EQ(pNumber->m_pIndicator[0], -1);

  CColumn name = ColumnOf(TextColumn("NAME", 6));
  const auto pText = Create<TextBind>(name, 2);
  char szNew[] = "new";
  Set(*pText, 1, "old");
  EXPECT_EQ(pText->SetData(1, szNew, -1), 1);
  EXPECT_STREQ(pText->m_pData + 7, "old");
  EXPECT_EQ(pText->m_pIndicator[1], -1);
}

TEST_F(Binds, ANegativeRowIsReportedAndRefused) {
  CColumn id = ColumnOf(IdColumn());
  CColumn name = ColumnOf(TextColumn("NAME", 6));
  EXPECT_EQ(Set(*Create<NumberBind>(id, 2), -1, 1.0), 0);
  EXPECT_EQ(Set(*Create<TextBind>(name, 2), -1, "a"), 0);
  EXPECT_THAT(m_asserts.Conditions(), ElementsAre("iRowIndex >= 0 && iRowIndex < m_nMaxRows",
                                                  "iRowIndex >= 0 && iRowIndex < this->m_nMaxRows"));
}

TEST_F(Binds, TheRowAfterTheLastIsReportedButNotRefusedAndTheOneAfterItIs) {
  CColumn id = ColumnOf(IdColumn());
  CColumn name = ColumnOf(TextColumn("NAME", 6));
  const auto pNumber = Create<NumberBind>(id, 2);
  const auto pText = Create<TextBind>(name, 2);
  EXPECT_EQ(Set(*pNumber, 2, 1.0), 1);
  EXPECT_EQ(Set(*pText, 2, "a"), 1);
  EXPECT_EQ(m_asserts.Conditions().size(), 2U);
  EXPECT_EQ(Set(*pNumber, 3, 1.0), 0);
  EXPECT_EQ(Set(*pText, 3, "a"), 0);
  EXPECT_EQ(m_asserts.Conditions().size(), 4U);
  EXPECT_EQ(pNumber->m_pData[1], 0.0);  // no other row was written in its place
  EXPECT_EQ(pText->m_pData[7], '\0');
}

TEST_F(Binds, MissingArraysAreReported) {
  CColumn column = ColumnOf(IdColumn());
  NumberBind bind(&column, 0);
  EXPECT_EQ(Set(bind, -1, 1.0), 0);
  EXPECT_THAT(m_asserts.Conditions(), ElementsAre("m_pData != __null", "m_pIndicator != __null",
                                                  "iRowIndex >= 0 && iRowIndex < m_nMaxRows"));
}

TEST_F(Binds, ATextWithoutAValueChangesNothing) {
  CColumn column = ColumnOf(TextColumn("NAME", 6));
  const auto pBind = Create<TextBind>(column, 2);
  Set(*pBind, 0, "old");
  EXPECT_EQ(pBind->SetData(0, nullptr, 3), 0);
  EXPECT_EQ(pBind->SetData(-1, nullptr, -1), 0);
  EXPECT_STREQ(pBind->m_pData, "old");
  EXPECT_EQ(pBind->m_pIndicator[0], 3);
  EXPECT_THAT(m_asserts.Conditions(), IsEmpty());
}

TEST_F(Binds, AShorterTextKeepsTheRestOfTheLongerOneBeforeIt) {
  CColumn column = ColumnOf(TextColumn("NAME", 6));
  const auto pBind = Create<TextBind>(column, 2);
  Set(*pBind, 1, "ABCDE");
  Set(*pBind, 1, "xy");
  EXPECT_STREQ(pBind->m_pData + 7, "xyCDE");
  EXPECT_EQ(pBind->m_pIndicator[1], 2);
}

TEST_F(Binds, TheKeyHasASequenceAndOtherNumbersARandomNumber) {
  CColumn id = ColumnOf(NumberColumn("iD", 10, 0));
  CColumn amount = ColumnOf(NumberColumn("AMOUNT", 10, 2, 1));
  const auto pID = Create<NumberBind>(id, 1);
  const auto pAmount = Create<NumberBind>(amount, 1);
  EXPECT_NE(dynamic_cast<CSequenceGenerator*>(pID->GetDataGenerator()), nullptr);
  EXPECT_FALSE(pID->GetDataGenerator()->m_bAllowNull);
  const auto* pGenerator = dynamic_cast<CNumberGenerator*>(pAmount->GetDataGenerator());
  ASSERT_NE(pGenerator, nullptr);
  EXPECT_EQ(pGenerator->m_nPercision, 10);
  EXPECT_EQ(pGenerator->m_nScale, 2);
  EXPECT_TRUE(pGenerator->m_bAllowNull);
}

TEST_F(Binds, TheScaleByteReachesTheGeneratorWithoutItsSign) {
  CColumn number = ColumnOf(NumberColumn("C", 0, -127));
  CColumn negative = ColumnOf(NumberColumn("C", 5, -2));
  const auto pNumber = Create<NumberBind>(number, 1);
  const auto pNegative = Create<NumberBind>(negative, 1);
  const auto* pUnconstrained = dynamic_cast<CNumberGenerator*>(pNumber->GetDataGenerator());
  EXPECT_EQ(pUnconstrained->m_nScale, 129);
  EXPECT_EQ(pUnconstrained->GetTypeCode(), CNumberGenerator::eInt);
  EXPECT_EQ(dynamic_cast<CNumberGenerator*>(pNegative->GetDataGenerator())->m_nScale, 254);
}

TEST_F(Binds, TextsAndDatesHaveTheirGenerators) {
  CColumn name = ColumnOf(TextColumn("NAME", 20, 1));
  CColumn born = ColumnOf(DateColumn("BORN"));
  CColumn seen = ColumnOf({"SEEN", SQLT_TIMESTAMP, 11, 0, 6, 1});
  const auto pName = Create<TextBind>(name, 1);
  const auto pBorn = Create<TextBind>(born, 1);
  const auto pSeen = Create<TextBind>(seen, 1);
  const auto* pText = dynamic_cast<CStrGenerator*>(pName->GetDataGenerator());
  ASSERT_NE(pText, nullptr);
  EXPECT_EQ(pText->m_nMaxLength, 21);
  EXPECT_TRUE(pText->m_bAllowNull);
  ASSERT_NE(dynamic_cast<CDateGenerator*>(pBorn->GetDataGenerator()), nullptr);
  EXPECT_FALSE(pBorn->GetDataGenerator()->m_bAllowNull);
  ASSERT_NE(dynamic_cast<CDateGenerator*>(pSeen->GetDataGenerator()), nullptr);
  EXPECT_TRUE(pSeen->GetDataGenerator()->m_bAllowNull);
}

TEST_F(Binds, TheSameGeneratorIsHandedOutAgain) {
  CColumn id = ColumnOf(IdColumn());
  CColumn name = ColumnOf(TextColumn("NAME", 20));
  const auto pNumber = Create<NumberBind>(id, 1);
  const auto pText = Create<TextBind>(name, 1);
  EXPECT_EQ(pNumber->m_pDataGenerator, nullptr);  // made at the first call
  EXPECT_EQ(pNumber->GetDataGenerator(), pNumber->GetDataGenerator());
  EXPECT_EQ(pText->GetDataGenerator(), pText->GetDataGenerator());
}

TEST_F(Binds, TheBareTextBindHasOneByteRowsAndNoGenerator) {
  CColumn column = ColumnOf(TextColumn("C", 1), 4);
  CBind<char, SQLT_STR> bind(&column, 2);
  EXPECT_EQ(bind.Initialize(), 1);
  EXPECT_EQ(bind.BindColumn(m_pStmt, m_driver.GetOCIError()), 1);
  EXPECT_THAT(Oci().Calls(), ElementsAre("OCIBindByPos(stmt#1, err#1, 4, &, 1, 5, &, null, null, 0, null, 0)",
                                         "OCIBindArrayOfStruct(bind#1, err#1, 1, 0, 0, 0)"));
  EXPECT_EQ(bind.GetDataGenerator(), nullptr);
  EXPECT_THAT(m_asserts.Conditions(), ElementsAre("0"));
}

TEST_F(Binds, CleanupFreesArraysAndGenerator) {
  CColumn column = ColumnOf(IdColumn());
  const auto pBind = Create<NumberBind>(column, 2);
  pBind->GetDataGenerator();
  pBind->Cleanup();
  EXPECT_EQ(pBind->m_pData, nullptr);
  EXPECT_EQ(pBind->m_pIndicator, nullptr);
  EXPECT_EQ(pBind->m_pDataGenerator, nullptr);
}

TEST_F(Binds, AssertionsNameTheHeader) {
  CColumn column = ColumnOf(IdColumn());
  Create<NumberBind>(column, 1)->BindColumn(nullptr, nullptr);
  EXPECT_THAT(
      m_asserts.Texts(),
      ElementsAre(testing::MatchesRegex("Benchmarks/CREP_ORA8/Bind.h:[0-9]+ [A-Za-z]+: pStmt != __null")));
}

}  // namespace
