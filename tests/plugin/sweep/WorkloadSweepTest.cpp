// SPDX-License-Identifier: Apache-2.0
// Fault sweeps of the insert, the update and the delete, with and without a recorded row.
#include "Benchmarks/CREP_ORA8/Xact_Delete.h"
#include "Benchmarks/CREP_ORA8/Xact_Insert.h"
#include "Benchmarks/CREP_ORA8/Xact_Update.h"
#include "CommonRules.h"
#include "SweepTest.h"
#include "XactSubject.h"

namespace sweep {
namespace {

using scripted::Oci;

constexpr char kSequenceQuery[] = "SELECT LK_REP_ID_SEQ.NEXTVAL FROM DUAL";

void HaveTables(Settings&) {
  for (const char* table : {"1", "2"})
    Oci().Describe(std::string("SELECT * FROM LK_REP_TABLE") + table, {{"ID", SQLT_NUM, 22, 0, -127, 0},
                                                                       {"COLUMN1", SQLT_NUM, 22, 5, 2, 1},
                                                                       {"COLUMN2", SQLT_CHR, 4, 0, 0, 0},
                                                                       {"COLUMN3", SQLT_DAT, 7, 0, 0, 1}});
  Oci().AnswerCounting(kSequenceQuery, 1001);
}

void HaveTablesButNoIds(Settings& settings) {
  HaveTables(settings);
  Oci().Answer(kSequenceQuery, {{{"0"}}});
}

// A row is recorded exactly when it was inserted.
class InsertSubject : public XactSubject<CXact_Insert> {
 public:
  using XactSubject::XactSubject;
  void Check(int nResult) override {
    const bool inserted = m_step == Step::kExecute && nResult == 1;
    EXPECT_EQ(m_benchmark.m_MapTableNumToRowID.GetCount(), inserted ? 1 : 0);
  }
};

template <class Transaction>
class RecordedRow : public XactSubject<Transaction> {
 public:
  using XactSubject<Transaction>::XactSubject;
  void Prepare() override {
    XactSubject<Transaction>::Prepare();
    this->m_benchmark.RecordRow(2, 1500);
  }
};

// The recorded row is forgotten exactly when the delete succeeded.
class RecordedDelete : public RecordedRow<CXact_Delete> {
 public:
  using RecordedRow::RecordedRow;
  void Check(int nResult) override {
    EXPECT_EQ(m_benchmark.m_MapTableNumToRowID.GetCount(), nResult == 1 ? 0 : 1);
  }
};

Rules OwnStatement(const std::string& report) {
  return {{"OCIHandleAlloc", "", kAnyFailure, Effect{0, {"ERROR %N: " + report + "\n"}}}};
}

// The measured statement; its row count is read, but not depended on.
Rules Measured(const std::string& text, const std::string& report) {
  return {{"OCIStmtPrepare", text, kAnyFailure, Effect{0, {"ERROR %N: " + report + "\n"}, 1}},
          {"OCIStmtExecute", text, kAnyFailure, Effect{0, {kOwnReport}, 1}},
          {"OCIAttrGet", text}};
}

constexpr char kNoId[] = "ERROR %N: Unable to generate ID for Insert transaction.\n";

Rules InsertRules() {
  return Describe({0, {"ERROR -1: Unable to retrieve table information in Insert Transaction"}, 1}) +
         Loader(1) + LoaderSend(1) +
         Rules{{"OCIStmtExecute", kSequenceQuery, kAnyFailure, Effect{0, {kNoId}, 1, 1}}} + Frees();
}

std::vector<Operation> InsertOperations() {
  const Rules prepare = OwnStatement("Unable statement handle in Insert Transaction!") +
                        Rules{{"OCIStmtPrepare", kSequenceQuery, kAnyFailure, Effect{-1, {kNoId}, 1}},
                              {"OCIDefineByPos", kSequenceQuery}};
  return {{"InsertPreBenchmark", Make<InsertSubject>(Step::kPreBenchmark, HaveTables), {1, {}, 1}, prepare},
          {"Insert", Make<InsertSubject>(Step::kExecute, HaveTables), {1, {}, 1}, InsertRules()},
          {"InsertWithoutAnId",
           Make<InsertSubject>(Step::kExecute, HaveTablesButNoIds),
           {0, {}, 1, 1},
           InsertRules()},
          {"InsertPostBenchmark",
           Make<XactSubject<CXact_Insert>>(Step::kPostBenchmark, HaveTables),
           {1},
           Frees()}};
}

std::vector<Operation> UpdateOperations() {
  const Rules rules =
      Describe({0, {"ERROR -1: Unable to retrieve table information in Update Transaction"}, 1}) + Loader(1) +
      Measured("update LK_REP_TABLE", "Unable to prepare statement for update transaction.") + Frees();
  return {{"UpdatePreBenchmark",
           Make<XactSubject<CXact_Update>>(Step::kPreBenchmark, HaveTables),
           {1, {}, 1},
           OwnStatement("Unable statement handle in Update Transaction!")},
          {"Update", Make<XactSubject<CXact_Update>>(Step::kExecute, HaveTables), {1, {}, 1}, rules},
          {"UpdateOfARecordedRow",
           Make<RecordedRow<CXact_Update>>(Step::kExecute, HaveTables),
           {1, {}, 1},
           rules},
          {"UpdatePostBenchmark",
           Make<XactSubject<CXact_Update>>(Step::kPostBenchmark, HaveTables),
           {1},
           Frees()}};
}

std::vector<Operation> DeleteOperations() {
  const Rules rules =
      Measured("delete from LK_REP_TABLE", "Unable to prepare statement for delete transaction.");
  return {{"DeletePreBenchmark",
           Make<XactSubject<CXact_Delete>>(Step::kPreBenchmark, HaveTables),
           {1, {}, 1},
           OwnStatement("Unable statement handle in Delete Transaction!")},
          {"Delete", Make<XactSubject<CXact_Delete>>(Step::kExecute, HaveTables), {1, {}, 1}, rules},
          {"DeleteOfARecordedRow", Make<RecordedDelete>(Step::kExecute, HaveTables), {1, {}, 1}, rules},
          {"DeletePostBenchmark",
           Make<XactSubject<CXact_Delete>>(Step::kPostBenchmark, HaveTables),
           {1},
           Frees()}};
}

SWEEP(Insert, InsertOperations());
SWEEP(Update, UpdateOperations());
SWEEP(Delete, DeleteOperations());

}  // namespace
}  // namespace sweep
