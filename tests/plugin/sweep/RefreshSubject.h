// SPDX-License-Identifier: Apache-2.0
// A refresh transaction as the subject of a fault sweep, and the rules of its one statement. Its
// PostBenchmark does not forget the handle that it frees, so a copy runs again before it or not at all.
#pragma once

#include "Benchmarks/CREP_ORA8/REP_RefreshTables_ORA8.h"
#include "CommonRules.h"
#include "XactSubject.h"

namespace sweep {

template <class Refresh>
class RefreshSubject : public XactSubject<Refresh> {
 public:
  using XactSubject<Refresh>::XactSubject;
  void Rewind() override {
    if (this->m_step < Step::kPostBenchmark) return;
    this->Renew();
    this->Prepare();
  }
};

// The statement is allocated once and kept. Its execution and its row count are read by the whole status:
// above OCI_SUCCESS_WITH_INFO is a failure, of which the driver does not report one whose low 16 bits are 0.
inline Rules RefreshStatement(const std::string& text) {
  const Effect failure{0, {kOwnReport}, 1};
  const Effect unreported{0, {}, 1};
  return {{"OCIHandleAlloc", text, kAnyFailure, Effect{0, {kOwnReport}}},
          {"OCIStmtPrepare", text, kAnyFailure, failure},
          {"OCIStmtExecute", text, kInfo},
          {"OCIStmtExecute", text, kLowBits, unreported},
          {"OCIStmtExecute", text, kAnyFailure, failure},
          {"OCIAttrGet", text, kInfo},
          {"OCIAttrGet", text, kLowBits, unreported},
          {"OCIAttrGet", text, kAnyFailure, failure}};
}

}  // namespace sweep
