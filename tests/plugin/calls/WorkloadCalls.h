// SPDX-License-Identifier: Apache-2.0
// The fixture of the call lists of the workload: one transaction whose operations are run with a journal.
#pragma once

#include "CallLists.h"
#include "WorkloadFixture.h"

namespace scripted {

template <class Transaction>
class WorkloadCalls : public WorkloadTest<Transaction, JournalTest> {
 protected:
  Events PreBenchmark() {
    return this->m_journal.Run([this] { return this->m_xact.PreBenchmark(); });
  }
  Events PreIteration() {
    return this->m_journal.Run([this] { return this->m_xact.PreIteration(); });
  }
  Events Execute() {
    return this->m_journal.Run([this] { return this->m_xact.Execute(); });
  }
  Events PostBenchmark() {
    return this->m_journal.Run([this] { return this->m_xact.PostBenchmark(); });
  }
};

}  // namespace scripted
