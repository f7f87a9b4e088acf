// SPDX-License-Identifier: Apache-2.0
// Standard output and standard error as whole lines and, where standard output is a terminal that can redraw,
// one status line below the last of them. Every update is one write, so nothing flickers, and fits the window
// as it is at that moment, so nothing wraps. The cursor rests at the beginning of the status line: whatever a
// terminal does with a line that has become too wide for its window, all of it is erased from there.
//
// One thread at a time. The descriptors are not owned.
#pragma once

#include <string>

#include "lkbench/display/Spans.h"

namespace lkbench {

class Screen {
 public:
  Screen(int out, int err);

  bool Redraws() const { return m_redraws; }  // there can be a status line
  bool Paints() const { return m_paints; }    // lines may have colours
  // What a line of this moment may take; without bound where standard output is no terminal.
  std::size_t Columns() const;
  std::size_t ErrorColumns() const;  // likewise of standard error

  // A line end is added.
  void Print(const std::string& text);
  void PrintError(const std::string& text);

  // The line is made anew each time that it is drawn. Does nothing where there can be none.
  void ShowStatus(FittedLine status);
  void EraseStatus();

 private:
  std::string Above(const std::string& text) const;  // what prints the text above the status line

  int m_out;
  int m_err;
  bool m_redraws;
  bool m_paints;
  bool m_is_shared;  // both go to one terminal
  FittedLine m_status;
};

}  // namespace lkbench
