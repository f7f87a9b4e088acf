// SPDX-License-Identifier: Apache-2.0
// Describing a table's columns.
#include <gmock/gmock.h>

#include "ConnectedDriver.h"
#include "DescribedTable.h"

namespace {

using scripted::ColumnSpec;
using scripted::DateColumn;
using scripted::IdColumn;
using scripted::NumberColumn;
using scripted::Oci;
using scripted::OraFault;
using scripted::TextColumn;
using testing::ElementsAre;
using testing::IsEmpty;

class Columns : public scripted::ConnectedDriver<> {
 protected:
  // A statement that was executed in describe-only mode. Calls from here on are the test's own.
  OCIStmt* Described(const std::vector<ColumnSpec>& columns) {
    const std::string sql = "SELECT * FROM T";
    Oci().Describe(sql, columns);
    void* pStmt = nullptr;
    OCIHandleAlloc(m_driver.GetOCIEnvironment(), &pStmt, OCI_HTYPE_STMT, 0, nullptr);
    m_pStmt = static_cast<OCIStmt*>(pStmt);
    OCIStmtPrepare(m_pStmt, Error(), reinterpret_cast<const OraText*>(sql.c_str()),
                   static_cast<ub4>(sql.size()), OCI_NTV_SYNTAX, OCI_DEFAULT);
    OCIStmtExecute(m_driver.GetOCIServerContext(), m_pStmt, Error(), 0, 0, nullptr, nullptr,
                   OCI_DESCRIBE_ONLY);
    Oci().ClearCalls();
    return m_pStmt;
  }
  ~Columns() override {
    if (m_pStmt != nullptr) OCIHandleFree(m_pStmt, OCI_HTYPE_STMT);
  }
  OCIError* Error() { return m_driver.GetOCIError(); }

  OCIStmt* m_pStmt = nullptr;
};

TEST_F(Columns, ANumberColumnIsReadAttributeByAttribute) {
  CColumn column(Described({IdColumn(), NumberColumn("COLUMN1", 10, 2, 1)}), Error(), 2);
  EXPECT_EQ(column.Initialize(), 1);
  EXPECT_EQ(column.GetName(), LKString(L"COLUMN1"));
  EXPECT_EQ(column.GetDataType(), SQLT_NUM);
  EXPECT_EQ(column.GetSize(), 22);
  EXPECT_EQ(column.GetPrecision(), 10);
  EXPECT_EQ(column.GetScale(), 2);
  EXPECT_EQ(column.GetColNumber(), 2);
  EXPECT_TRUE(column.IsNullable());
  EXPECT_FALSE(column.IsDateColumn());
  EXPECT_FALSE(column.IsPrimaryKey());
  EXPECT_THAT(Oci().Calls(),
              ElementsAre("OCIParamGet(stmt#1, 4, err#1, 2)", "OCIAttrGet(par#1, 53, &, 4, err#1)",
                          "OCIAttrGet(par#1, 53, null, 2, err#1)", "OCIAttrGet(par#1, 53, null, 1, err#1)",
                          "OCIAttrGet(par#1, 53, null, 7, err#1)", "OCIAttrGet(par#1, 53, null, 5, err#1)",
                          "OCIAttrGet(par#1, 53, null, 6, err#1)"));
}

TEST_F(Columns, PrecisionAndScaleAreReadForNumbersOnly) {
  ColumnSpec text = TextColumn("NAME", 20);
  text.precision = 9;
  text.scale = 3;
  CColumn column(Described({text}), Error(), 1);
  EXPECT_EQ(column.Initialize(), 1);
  EXPECT_EQ(column.GetPrecision(), 0);
  EXPECT_EQ(column.GetScale(), 0);
  EXPECT_EQ(Oci().CountCalls("OCIAttrGet"), 4);
}

TEST_F(Columns, AColumnWithoutStatementOrErrorHandleIsReportedAndFails) {
  OCIStmt* pStmt = Described({IdColumn()});
  EXPECT_EQ(CColumn(nullptr, Error(), 1).Initialize(), 0);
  EXPECT_EQ(CColumn(pStmt, nullptr, 1).Initialize(), 0);
  EXPECT_THAT(m_asserts.Conditions(), ElementsAre("m_pStmt && m_pError", "m_pStmt && m_pError"));
  EXPECT_THAT(Oci().Calls(), IsEmpty());
}

TEST_F(Columns, AreDescribedInSelectListOrder) {
  CColumns columns;
  EXPECT_EQ(
      columns.Initialize(Described({IdColumn(), TextColumn("NAME", 20), DateColumn("BORN", 1)}), Error()), 1);
  EXPECT_EQ(Oci().Calls().front(), "OCIAttrGet(stmt#1, 4, null, 18, err#1)");
  EXPECT_EQ(columns.GetCount(), 3U);
  ASSERT_EQ(columns.m_ColArray.GetCount(), 3);
  EXPECT_EQ(columns.GetAt(0)->GetName(), LKString(L"ID"));
  EXPECT_EQ(columns.GetAt(1)->GetName(), LKString(L"NAME"));
  EXPECT_EQ(columns[2LL]->GetName(), LKString(L"BORN"));
  EXPECT_EQ(columns.GetAt(2)->GetColNumber(), 3);
  EXPECT_TRUE(columns.GetAt(2)->IsDateColumn());
}

TEST_F(Columns, TheFirstThatFailsEndsTheWalkAndIsLeftOut) {
  CColumns columns;
  OCIStmt* pStmt = Described({IdColumn(), TextColumn("NAME", 20), DateColumn("BORN")});
  Oci().FailCall("OCIParamGet", 2, OraFault(24334));
  EXPECT_EQ(columns.Initialize(pStmt, Error()), 0);
  EXPECT_EQ(columns.m_ColArray.GetCount(), 1);
  EXPECT_EQ(columns.GetCount(), 3U);  // what the database reported
  EXPECT_EQ(Oci().CountCalls("OCIParamGet"), 2);
}

TEST_F(Columns, FailWhenTheCountCannotBeRead) {
  CColumns columns;
  OCIStmt* pStmt = Described({IdColumn()});
  Oci().FailCall("OCIAttrGet", 1, OraFault(24315));
  EXPECT_EQ(columns.Initialize(pStmt, Error()), 0);
  EXPECT_TRUE(columns.m_ColArray.IsEmpty());
  EXPECT_EQ(Oci().CountCalls("OCIParamGet"), 0);
}

TEST_F(Columns, ACountOfZeroIsNoFailure) {
  CColumns columns;
  EXPECT_EQ(columns.Initialize(Described({}), Error()), 1);
  EXPECT_EQ(columns.GetCount(), 0U);
  EXPECT_TRUE(columns.m_ColArray.IsEmpty());
}

TEST_F(Columns, AnIndexOutsideIsReportedAndGivesNull) {
  CColumns columns;
  columns.Initialize(Described({IdColumn(), TextColumn("NAME", 20)}), Error());
  EXPECT_EQ(columns.GetAt(-1), nullptr);
  EXPECT_EQ(columns.GetAt(2), nullptr);
  EXPECT_EQ(columns[2LL], nullptr);
  const char* kCondition = "index >= 0 && index <= m_ColArray.GetUpperBound()";
  EXPECT_THAT(m_asserts.Conditions(), ElementsAre(kCondition, kCondition, kCondition));
  EXPECT_NE(columns.GetAt(0), nullptr);
  EXPECT_NE(columns.GetAt(1), nullptr);
  EXPECT_EQ(m_asserts.Conditions().size(), 3U);
}

TEST_F(Columns, ANameIsLookedUpIgnoringCase) {
  CColumns columns;
  columns.Initialize(Described({IdColumn(), TextColumn("Name", 20)}), Error());
  EXPECT_EQ(columns[L"id"], columns.GetAt(0));
  EXPECT_EQ(columns[L"NAME"], columns.GetAt(1));
  EXPECT_EQ(columns[L"NOT_THERE"], nullptr);
}

TEST_F(Columns, TheFirstOfTwoEqualNamesIsFound) {
  CColumns columns;
  columns.Initialize(Described({IdColumn(), TextColumn("A", 20), TextColumn("a", 20)}), Error());
  EXPECT_EQ(columns[L"a"], columns.GetAt(1));
}

TEST_F(Columns, DeleteAllEmptiesTheArray) {
  CColumns columns;
  columns.Initialize(Described({IdColumn(), TextColumn("NAME", 20)}), Error());
  columns.DeleteAll();
  EXPECT_TRUE(columns.m_ColArray.IsEmpty());
}

TEST_F(Columns, DatesAreDateAndTimestamp) {
  for (const ub2 nType : {SQLT_DAT, SQLT_TIMESTAMP})
    EXPECT_TRUE(scripted::ColumnOf({"D", nType, 11, 0, 0, 0}).IsDateColumn()) << nType;
  for (const ub2 nType : {SQLT_NUM, SQLT_CHR, SQLT_TIMESTAMP_TZ})
    EXPECT_FALSE(scripted::ColumnOf({"D", nType, 11, 0, 0, 0}).IsDateColumn()) << nType;
}

TEST_F(Columns, TheKeyIsTheColumnNamedIdInAnyCase) {
  EXPECT_TRUE(scripted::ColumnOf(IdColumn()).IsPrimaryKey());
  EXPECT_TRUE(scripted::ColumnOf(NumberColumn("Id", 0, 0)).IsPrimaryKey());
  EXPECT_FALSE(scripted::ColumnOf(NumberColumn("IDX", 0, 0)).IsPrimaryKey());
}

}  // namespace
