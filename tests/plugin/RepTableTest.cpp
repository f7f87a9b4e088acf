// SPDX-License-Identifier: Apache-2.0
// Describing a table by name.
#include "Benchmarks/CREP_ORA8/RepTable.h"

#include <gmock/gmock.h>

#include <memory>

#include "Benchmarks/CREP_ORA8/TableLoader.h"
#include "ConnectedDriver.h"
#include "DescribedTable.h"

namespace {

using scripted::DescribeTable;
using scripted::IdColumn;
using scripted::TextColumn;
using testing::ElementsAre;

class RepTable : public scripted::ConnectedDriver<> {
 protected:
  RepTable() { DescribeTable("LK_REP_TABLE1", {IdColumn(), TextColumn("COLUMN1", 20)}); }
};

TEST_F(RepTable, TakesADriverLater) {
  CRepTable table(nullptr, L"LK_REP_TABLE1");
  table.SetDriver(&m_driver);
  EXPECT_EQ(table.Initialize(), 1);
}

TEST_F(RepTable, CreatesAnInitialisedLoaderOfItsColumns) {
  CRepTable table(&m_driver, L"LK_REP_TABLE1");
  ASSERT_EQ(table.Initialize(), 1);
  const std::unique_ptr<CTableLoader> pLoader(table.CreateLoader(7));
  EXPECT_EQ(pLoader->m_strName, LKString(L"LK_REP_TABLE1"));
  EXPECT_EQ(pLoader->m_pColumns, &table.GetColumns());
  EXPECT_EQ(pLoader->m_nRowsPerCommit, 7);
  EXPECT_EQ(pLoader->GetBindArray().GetCount(), 2);
  EXPECT_EQ(pLoader->m_pDriver, &m_driver);
}

TEST_F(RepTable, CreatesALoaderAlsoWhenAColumnCannotBeBound) {
  DescribeTable("LK_REP_TABLE2", {IdColumn(), {"DOC", SQLT_CLOB, 4000, 0, 0, 1}});
  CRepTable table(&m_driver, L"LK_REP_TABLE2");
  ASSERT_EQ(table.Initialize(), 1);
  const std::unique_ptr<CTableLoader> pLoader(table.CreateLoader(7));
  ASSERT_NE(pLoader, nullptr);
  EXPECT_EQ(pLoader->GetBindArray().GetCount(), 1);
  EXPECT_THAT(m_asserts.Conditions(), ElementsAre("0"));
}

}  // namespace
