// SPDX-License-Identifier: Apache-2.0
// Where the ID sequence starts, and what a second drop of it does.
#include "Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/CREP_DeleteObjects_ORA8.h"
#include "SchemaFixture.h"

namespace {

using scripted::Oci;
using scripted::OraFault;
using testing::ElementsAre;
using testing::IsEmpty;

std::string CreateSql(const std::string& start) {
  return "CREATE SEQUENCE LK_REP_ID_SEQ START WITH " + start + " CACHE 100";
}

class CreateSequence : public plugin_test::SchemaTest {
 protected:
  int Run(double fScale) {
    m_benchmark.SetBenchmarkScale(fScale);
    Bind(m_xact);
    return m_xact.Execute();
  }

  CXact_Create_Sequence m_xact;
};

TEST_F(CreateSequence, StartsJustAboveTheRowsOfTheBenchmarksScale) {
  m_properties.SetScale(7);  // of the settings: not asked
  EXPECT_EQ(Run(2.5), 1);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre(CreateSql("2501")));
}

TEST_F(CreateSequence, TheRowsAreTruncatedBeforeOneIsAdded) {
  EXPECT_EQ(Run(1.9999), 1);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre(CreateSql("2000")));
}

TEST_F(CreateSequence, AStartAboveThirtyTwoBitsIsWrittenWhole) {
  EXPECT_EQ(Run(5e6), 1);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre(CreateSql("5000000001")));
}

class DropSequence : public plugin_test::SchemaTest {};

TEST_F(DropSequence, DroppingItTwiceIsSilentAndFailsTheSecondTime) {
  CXact_Drop_Sequence xact;
  Bind(xact);
  EXPECT_NE(xact.Execute(), 0);
  EXPECT_THAT(Oci().ExecutedSql(), ElementsAre("DROP SEQUENCE LK_REP_ID_SEQ"));
  Oci().FailSql("DROP SEQUENCE", 1, OraFault(2289, "sequence does not exist"));
  EXPECT_EQ(xact.Execute(), 0);
  EXPECT_THAT(m_reports.Reports(), IsEmpty());
  for (const int nCode : {942, 4043, 2289}) EXPECT_FALSE(m_driver.IsIgnoredError(nCode)) << nCode;
  EXPECT_EQ(ExtraHandles(), 0);
}

}  // namespace
