// SPDX-License-Identifier: Apache-2.0
// What the benchmark and its schema transactions do when they are made, registered and brought through the
// operations around their executions: nothing that a database or a timer could notice, and the host's own
// operations where a transaction has none.
#include "Benchmarks/CREP_ORA8/REP_RefreshTables_ORA8.h"
#include "SchemaCalls.h"

namespace plugin_test {
namespace {

using testing::ElementsAre;

class Registering : public SchemaTest {};

TEST_F(Registering, TouchesNeitherDatabaseNorTimer) {
  for (const int bSetup : {0, 1})
    EXPECT_THAT(m_journal.Run([&] { return m_benchmark.RegisterTransactions(bSetup); }),
                ElementsAre(kSucceeds));
}

class SchemaTransaction : public SchemaTest, public testing::WithParamInterface<const char*> {
 protected:
  std::unique_ptr<CXact> Make() {
    return std::unique_ptr<CXact>(dynamic_cast<CXact*>(wxCreateDynamicObject(GetParam())));
  }
};

TEST_P(SchemaTransaction, IsMadeAndDeletedWithoutACall) {
  EXPECT_THAT(m_journal.Run([&] { return Make() == nullptr ? 0 : 1; }), ElementsAre(kSucceeds));
}

// kept: what a refresh has of its own does not call the host's.
TEST_P(SchemaTransaction, HasTheHostsOperationsAroundItsExecutionsButThoseOfARefresh) {
  const std::unique_ptr<CXact> pXact = Make();
  ASSERT_NE(pXact, nullptr);
  SetTables(1);
  for (CDriverBase* pDriver : {static_cast<CDriverBase*>(&m_driver), static_cast<CDriverBase*>(nullptr)}) {
    Bind(*pXact);
    pXact->SetUserID(1);
    pXact->SetDriver(pDriver);
    // Only the refresh of the tables has a PreBenchmark of its own, which needs a driver.
    const bool bListsTables = std::string(GetParam()) == "CREP_RefreshTable_ORA8";
    const Events listing = {pDriver == nullptr ? kFails : kSucceeds};
    EXPECT_EQ(m_journal.Run([&] { return pXact->PreBenchmark(); }),
              bListsTables ? listing : Events({"CXact::PreBenchmark()", kSucceeds}));
    EXPECT_THAT(m_journal.Run([&] { return pXact->PreIteration(); }),
                ElementsAre("CXact::PreIteration()", kSucceeds));
    EXPECT_THAT(m_journal.Run([&] { return pXact->PostIteration(); }), ElementsAre(kSucceeds));
    const bool bRefresh = pXact->IsKindOf(CLASSINFO(CREP_Refresh_Base));
    EXPECT_EQ(m_journal.Run([&] { return pXact->PostBenchmark(); }),
              bRefresh ? Events({kSucceeds}) : Events({"CXact::PostBenchmark()", kSucceeds}));
  }
  EXPECT_EQ(ExtraHandles(), 0);
}

std::string NameOfClass(const testing::TestParamInfo<const char*>& info) { return info.param; }

INSTANTIATE_TEST_SUITE_P(, SchemaTransaction,
                         testing::Values("CXact_Create_RepTables", "CXact_Drop_RepTables",
                                         "CXact_Create_Sequence", "CXact_Drop_Sequence",
                                         "CXact_Create_Replication_Properties_Table",
                                         "CXact_Drop_Replication_Properties_Table", "CREP_Refresh_Base",
                                         "CREP_RefreshTable_ORA8", "CREP_Refresh_Properties_Table",
                                         "CREP_Refresh_Sequence"),
                         NameOfClass);

}  // namespace
}  // namespace plugin_test
