// SPDX-License-Identifier: Apache-2.0
// A run on the console: lines, and the status line of a terminal.
#pragma once

#include "lkbench/Console.h"
#include "lkbench/display/RunView.h"

namespace lkbench {

class ConsoleView final : public RunView {
 public:
  explicit ConsoleView(Console& console) : m_console(console) {}

  void OnLoad(const LoadState& load) override;
  void OnTables(const TablesState& state) override;
  void OnInterval(const Progress& progress) override;

 private:
  Console& m_console;
};

}  // namespace lkbench
