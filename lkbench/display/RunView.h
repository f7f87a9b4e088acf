// SPDX-License-Identifier: Apache-2.0
// What a verb tells while it works, for each of those who show it: the console, the stream, the metrics. All
// is called on the thread that runs the verb, about once a second, never on a user's. What is referred to
// lives during the call.
#pragma once

#include <memory>
#include <vector>

#include "lkbench/display/ProgressText.h"
#include "lkbench/workload/Progress.h"

namespace lkbench {

class RunView {
 public:
  virtual ~RunView() = default;

  virtual void OnLoad(const LoadState&) {}  // at its begin, about once a second, and at its end
  virtual void OnInterval(const Progress&) {}
  virtual void OnPhaseEnd(const PhaseRecord&) {}
  virtual void OnEvent(const Event&) {}
  virtual void OnNewError(const ErrorRecord&) {}  // of a number that had not come before
};

class RunViews {
 public:
  void Add(std::unique_ptr<RunView> view) { m_views.push_back(std::move(view)); }

  template <class Value>
  void Tell(void (RunView::*what)(const Value&), const Value& value) const {
    for (const auto& view : m_views) (view.get()->*what)(value);
  }

 private:
  std::vector<std::unique_ptr<RunView>> m_views;
};

}  // namespace lkbench
