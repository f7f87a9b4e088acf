// SPDX-License-Identifier: Apache-2.0
// A transaction of the plug-in as the subject of a fault sweep: one lifecycle operation is swept, those
// before it are run without a fault, and PostBenchmark gives back what it owns.
#pragma once

#include <gtest/gtest.h>
#include <wx/log.h>

#include "Benchmarks/CREP_ORA8/CREP_ORA8.h"
#include "FaultSweep.h"
#include "db/Xact.h"

namespace sweep {

enum class Step { kPreBenchmark, kPreIteration, kExecute, kPostBenchmark };

// Two tables, one user, scale 1: as long as a Setup does not say otherwise.
struct Settings {
  CBenchmarkProperties properties;
  bool cancelled = false;
};
using Setup = std::function<void(Settings&)>;  // also tells the scripted OCI what it is to answer

template <class Transaction>
class XactSubject : public Subject {
 public:
  XactSubject(Step step, const Setup& setup) : m_step(step) {
    wxLog::SetLogLevel(wxLOG_Message);  // no debug line of a workload transaction
    m_settings.properties.GetRepBenchmarkProperties().SetTableNumber(2);
    setup(m_settings);
    Connect();
    Renew();
  }

  void Renew() {
    m_xact = std::make_unique<Transaction>();
    m_xact->SetDriver(&m_driver);
    m_xact->SetBenchmark(&m_benchmark);
    m_xact->SetBenchmarkProperties(m_settings.properties);
    m_xact->SetUserID(1);
    if (m_settings.cancelled) m_xact->RequestCancel();
  }
  void Prepare() override {
    for (const Step step : {Step::kPreBenchmark, Step::kPreIteration, Step::kExecute}) {
      if (step < m_step) {
        EXPECT_EQ(Call(step), 1);
      }
    }
  }
  int Run() override { return Call(m_step); }
  void Finish() override {
    if (m_step < Step::kPostBenchmark) {
      EXPECT_EQ(Call(Step::kPostBenchmark), 1);
    }
  }

  Settings m_settings;
  CREP_ORA8 m_benchmark;
  std::unique_ptr<Transaction> m_xact;

 protected:
  const Step m_step;

 private:
  int Call(Step step) {
    switch (step) {
      case Step::kPreBenchmark:
        return m_xact->PreBenchmark();
      case Step::kPreIteration:
        return m_xact->PreIteration();
      case Step::kExecute:
        return m_xact->Execute();
      default:
        return m_xact->PostBenchmark();
    }
  }
};

template <class SubjectClass>
std::function<std::unique_ptr<Subject>()> Make(Step step, const Setup& setup) {
  return [=] { return std::make_unique<SubjectClass>(step, setup); };
}

}  // namespace sweep
