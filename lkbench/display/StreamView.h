// SPDX-License-Identifier: Apache-2.0
// A run as objects on standard output.
#pragma once

#include "lkbench/Console.h"
#include "lkbench/display/RunView.h"

namespace lkbench {

class StreamView final : public RunView {
 public:
  explicit StreamView(Console& console) : m_console(console) {}

  void OnLoad(const LoadState& load) override;
  void OnTables(const TablesState& state) override;
  void OnInterval(const Progress& progress) override;
  void OnPhaseEnd(const PhaseRecord& phase) override;
  void OnEvent(const Event& event) override;
  void OnNewError(const ErrorRecord& error) override;

 private:
  Console& m_console;
};

}  // namespace lkbench
