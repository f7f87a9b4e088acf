// SPDX-License-Identifier: Apache-2.0
// What a verb tells while it works, for each of those who show it: the console, the stream, the metrics. All
// is called on the thread that runs the verb, about once a second, never on a user's. What is referred to
// lives during the call.
#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "lkbench/display/ProgressText.h"
#include "lkbench/workload/Progress.h"

namespace lkbench {

class RunView {
 public:
  virtual ~RunView() = default;

  virtual void OnLoad(const LoadState&) {}      // at its begin, about once a second, and at its end
  virtual void OnTables(const TablesState&) {}  // likewise, of a create, a refresh and a drop
  virtual void OnInterval(const Progress&) {}
  virtual void OnPhaseEnd(const PhaseRecord&) {}
  virtual void OnEvent(const Event&) {}
  virtual void OnNewError(const ErrorRecord&) {}  // of a number that had not come before
};

// Nothing is told any more once they are closed: by the thread that ends the process while the verb's hangs.
class RunViews {
 public:
  void Add(std::unique_ptr<RunView> view) { m_views.push_back(std::move(view)); }

  template <class Value>
  void Tell(void (RunView::*what)(const Value&), const Value& value) const {
    const std::lock_guard lock(m_mutex);
    if (m_is_closed) return;
    for (const auto& view : m_views) (view.get()->*what)(value);
  }
  void Close() {
    const std::lock_guard lock(m_mutex);
    m_is_closed = true;
  }

 private:
  mutable std::mutex m_mutex;
  bool m_is_closed = false;
  std::vector<std::unique_ptr<RunView>> m_views;
};

}  // namespace lkbench
