// SPDX-License-Identifier: Apache-2.0
// A run as metrics for Prometheus, at http://127.0.0.1:PORT/metrics while the object lives. Its threads
// answer from copies; the signals that are blocked where it is made stay blocked in them.
#pragma once

#include <prometheus/exposer.h>

#include <memory>

#include "lkbench/display/RunView.h"
#include "lkbench/metrics/RunFigures.h"

namespace lkbench {

// Throws PrepareError where the port cannot be had.
void RequireMetricsPort(int port);

class MetricsView final : public RunView {
 public:
  MetricsView(int port, RunFigures::Labels run);  // likewise

  void OnLoad(const LoadState& load) override { m_figures->Set(load); }
  void OnInterval(const Progress& progress) override { m_figures->Set(progress); }
  void OnPhaseEnd(const PhaseRecord&) override { m_figures->EndPhase(); }

 private:
  std::shared_ptr<RunFigures> m_figures;
  std::unique_ptr<prometheus::Exposer> m_exposer;
};

}  // namespace lkbench
