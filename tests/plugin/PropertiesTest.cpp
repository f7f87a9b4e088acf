// SPDX-License-Identifier: Apache-2.0
// What the create of the properties table writes into it.
#include "Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.h"
#include "SchemaFixture.h"

namespace {

using scripted::Oci;
using testing::ElementsAre;

const std::string kCreateTable =
    "CREATE TABLE LK_REP_PROPERTIES ( PROP_NAME VARCHAR2(50) NOT NULL, PROP_VALUE VARCHAR2(255) NOT NULL)";

std::string Row(const std::string& name, const std::string& value) {
  return "INSERT INTO LK_REP_PROPERTIES (PROP_NAME, PROP_VALUE) VALUES('" + name + "', '" + value + "'); ";
}

class CreateProperties : public plugin_test::SchemaTest {
 protected:
  CreateProperties() {
    SetTables(4);
    SetColumnNumbers(5, 12);
    m_properties.GetRepBenchmarkProperties().SetColumnDistribution(
        CRepBenchmarkProperties::NORMAL_DISTRIBUTION);
    m_properties.SetScale(3);
    SetColumns({});
  }

  int Run() {
    Bind(m_xact);
    return m_xact.Execute();
  }
  // The value rows of the settings above, with this scale.
  static std::string ValueRows(const std::string& scale) {
    return Row("Number Of Tables", "4") + Row("Minimum Column", "5") + Row("Maximum Column", "12") +
           Row("Distribution Mode", "4") + Row("Scale", scale);
  }
  static std::string Block(const std::string& rows) { return "BEGIN " + rows + " END;"; }

  CXact_Create_Replication_Properties_Table m_xact;
};

TEST_F(CreateProperties, AStartTableBelowOneCreatesTheTable) {
  for (const int nStart : {0, -1}) {
    m_properties.SetIntAttribute1(nStart);
    Oci().ClearCalls();
    EXPECT_EQ(Run(), 1);
    EXPECT_EQ(Oci().ExecutedSql().front(), kCreateTable);
  }
}

TEST_F(CreateProperties, NoColumnTypesGiveExactlyTheFiveValueRows) {
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(Oci().ExecutedSql().back(), Block(ValueRows("3")));
  m_properties.GetRepBenchmarkProperties().ClearColumnInfo();
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(Oci().ExecutedSql().back(), Block(ValueRows("3")));
}

TEST_F(CreateProperties, TheScaleIsRecordedTruncated) {
  m_properties.SetScale(2.9);
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(Oci().ExecutedSql().back(), Block(ValueRows("2")));
  m_properties.SetScale(-2.9);
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(Oci().ExecutedSql().back(), Block(ValueRows("-2")));
}

TEST_F(CreateProperties, ATypeIsWrittenAsItIsGiven) {
  SetColumns({Column(L"NUMBER(10,2)", 1, false), Column(L"CHAR(%d)", 2, true)});
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(Oci().ExecutedSql().back(), Block(ValueRows("3") + Row("Column Structure", "NUMBER(10,2)@1@0") +
                                              Row("Column Structure", "CHAR(%d)@2@1")));
}

TEST_F(CreateProperties, AMissingColumnTypeEndsTheStructureRowsAndTheRestIsWritten) {
  SetColumns({Column(L"DATE", 2, true), nullptr, Column(L"NUMBER", 3, false)});
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(Oci().ExecutedSql().back(), Block(ValueRows("3") + Row("Column Structure", "DATE@2@1")));
  EXPECT_THAT(m_asserts.Texts(),
              ElementsAre("Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.cpp:345 Execute: pColumn != __null"));
}

TEST_F(CreateProperties, AnEntryThatIsNoColumnTypeCountsAsMissing) {
  SetColumns({std::make_shared<CSSBenchmark>(), Column(L"NUMBER", 3, false)});
  EXPECT_EQ(Run(), 1);
  EXPECT_EQ(Oci().ExecutedSql().back(), Block(ValueRows("3")));
  EXPECT_THAT(m_asserts.Conditions(), ElementsAre("pColumn != __null"));
}

}  // namespace
