// SPDX-License-Identifier: Apache-2.0
// Fault sweeps of what transactions are made of: a table's describe, its loader, the next ID, a refresh's
// statement. And the operations that make no call at all.
#include "Benchmarks/CREP_ORA8/CREP_InitObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/RepTable.h"
#include "Benchmarks/CREP_ORA8/TableLoader.h"
#include "Benchmarks/CREP_ORA8/Xact_Insert.h"
#include "RefreshSubject.h"
#include "SweepTest.h"

namespace sweep {
namespace {

using scripted::Oci;

constexpr char kSequenceQuery[] = "SELECT LK_REP_ID_SEQ.NEXTVAL FROM DUAL";

void Nothing(Settings&) {}

class TableSubject : public Subject {
 public:
  TableSubject() {
    Oci().Describe("SELECT * FROM LK_REP_TABLE1",
                   {{"ID", SQLT_NUM, 22, 0, -127, 0}, {"COLUMN1", SQLT_CHR, 4}, {"COLUMN2", SQLT_DAT, 7}});
    Connect();
  }
  void Prepare() override { m_table = std::make_unique<CRepTable>(&m_driver, L"LK_REP_TABLE1"); }
  int Run() override { return m_table->Initialize(); }
  void Finish() override { m_table.reset(); }

 protected:
  std::unique_ptr<CRepTable> m_table;
};

class LoaderSubject : public TableSubject {
 public:
  void Prepare() override {
    TableSubject::Prepare();
    EXPECT_EQ(m_table->Initialize(), 1);
    m_loader.reset(m_table->CreateLoader(2));
    m_loader->SetStartingRows(1);
  }
  int Run() override { return m_loader->BindColumns(); }
  void Finish() override {
    m_loader.reset();
    TableSubject::Finish();
  }

 protected:
  std::unique_ptr<CTableLoader> m_loader;
};

// The rows stay filled until they are sent.
class BatchSubject : public LoaderSubject {
 public:
  void Prepare() override {
    LoaderSubject::Prepare();
    EXPECT_EQ(m_loader->BindColumns(), 1);
    for (const long nRow : {1, 2}) m_loader->MakeRecord(nRow);
  }
  int Run() override { return m_loader->SendRows(2); }
  void Check(int nResult) override { EXPECT_EQ(m_loader->m_nNumberOfRows, nResult == 1 ? 0 : 2); }
};

class NextIdSubject : public XactSubject<CXact_Insert> {
 public:
  NextIdSubject() : XactSubject(Step::kExecute, Nothing) { Oci().Answer(kSequenceQuery, {{{"7"}}}); }
  int Run() override { return static_cast<int>(m_xact->GenerateNextID()); }
};

class RefreshTextSubject : public RefreshSubject<CREP_Refresh_Base> {
 public:
  RefreshTextSubject() : RefreshSubject(Step::kExecute, Nothing) { Oci().RowCounts("DELETE FROM T", {3, 3}); }
  int Run() override { return m_xact->Execute("DELETE FROM T"); }
};

template <class SubjectClass>
std::function<std::unique_ptr<Subject>()> Make() {
  return [] { return std::make_unique<SubjectClass>(); };
}

Rules WithResult(Rules rules, int nFrom, int nTo) {
  for (Rule& rule : rules)
    if (rule.effect && rule.effect->result == nFrom) rule.effect->result = nTo;
  return rules;
}

// The table keeps its statement when its columns cannot be read, and gives it back in the end.
Rules TableRules() {
  const Effect columns{0, {"ERROR %N: Unable to initialize columns\n"}, 1};
  return Rules{{"OCIAttrGet", "SELECT * FROM ", kAnyFailure, columns},
               {"OCIParamGet", "SELECT * FROM ", kAnyFailure, columns}} +
         Describe({0}) + Frees();
}

// The loader, too, keeps a statement that could not be prepared or bound. One handle is the table's.
Rules LoaderRules() {
  Rules rules = Loader(2);
  rules.front().effect->owned = 1;
  return rules;
}

std::vector<Operation> PartOperations() {
  const char* const no_id = "ERROR %N: Unable to generate ID for Insert transaction.\n";
  return {{"TableInitialize", Make<TableSubject>(), {1, {}, 1}, TableRules()},
          {"LoaderBindColumns", Make<LoaderSubject>(), {1, {}, 2}, LoaderRules()},
          {"LoaderSendRows", Make<BatchSubject>(), {1, {}, 2}, LoaderSend(2)},
          {"GenerateNextID",
           Make<NextIdSubject>(),
           {7, {}, 1},
           {{"OCIStmtExecute", kSequenceQuery, kAnyFailure, Effect{-1, {no_id}, 1}}}},
          {"RefreshExecuteOfAText",
           Make<RefreshTextSubject>(),
           {3, {}, 1},
           WithResult(RefreshStatement("DELETE FROM T"), 0, -1)}};
}

SWEEP(Part, PartOperations());

// Where a lifecycle operation makes no OCI call there is nothing to sweep. Everything else is swept.
TEST(OperationsWithoutCalls, AreAllPreIterationsAndWhatTransactionsDoNotOverride) {
  const std::vector<std::string> preparing = {"CXact_Insert", "CXact_Update", "CXact_Delete"};
  Oci().Reset();
  COracle8Driver driver;
  ASSERT_EQ(driver.Connect(L"scripted", L"user", L"password"), 1);
  CREP_ORA8 benchmark;
  benchmark.RegisterTransactions(1);
  ASSERT_EQ(benchmark.GetXactCount(), 13);
  CBenchmarkProperties properties;
  properties.GetRepBenchmarkProperties().SetTableNumber(1);
  for (int i = 0; i < benchmark.GetXactCount(); ++i) {
    CXact& xact = *benchmark.GetXact(i);
    const std::string name = wxString(xact.GetClassInfo()->GetClassName()).utf8_string();
    xact.SetDriver(&driver);
    xact.SetUserID(1);
    xact.SetBenchmarkProperties(properties);
    Oci().ClearCalls();
    if (std::ranges::find(preparing, name) == preparing.end()) {
      EXPECT_EQ(xact.PreBenchmark(), 1) << name;
    }
    EXPECT_EQ(xact.PreIteration(), 1) << name;
    EXPECT_EQ(xact.PostIteration(), 1) << name;
    EXPECT_EQ(xact.PostBenchmark(), 1) << name;
    EXPECT_EQ(Oci().Calls(), std::vector<std::string>{}) << name;
  }
}

}  // namespace
}  // namespace sweep
