// SPDX-License-Identifier: Apache-2.0
// What happens in a run beside its numbers: failures by error number, and events. Any thread may write; both
// are bounded, so a long outage of many users costs no more memory than a short one.
#pragma once

#include <map>
#include <mutex>
#include <vector>

#include "lkbench/workload/RunRecord.h"
#include "lkbench/workload/Schedule.h"

namespace lkbench {

class RunNotes {
 public:
  static constexpr size_t kMostErrors = 200;  // different ones; the rest of a class share number 0
  static constexpr size_t kMostEvents = 2000;

  void SetOrigin(TimePoint origin);  // before anything is noted: offsets count from here
  std::uint64_t Offset(TimePoint time) const;

  void NoteFailure(TimePoint time, ErrorClass error_class, long code, const std::string& text);
  void NoteEvent(EventKind kind, TimePoint begin, TimePoint end, int user, const std::string& text);

  // What was noted since the last call: events, and the errors of numbers that are new.
  struct News {
    std::vector<Event> events;
    std::vector<ErrorRecord> errors;
  };
  News TakeNews();

  void Write(RunRecord& record) const;

 private:
  mutable std::mutex m_mutex;
  TimePoint m_origin{};
  std::map<std::pair<ErrorClass, long>, ErrorRecord> m_errors;
  std::vector<Event> m_events;
  std::uint64_t m_more_events = 0;
  size_t m_told_events = 0;
  std::vector<std::pair<ErrorClass, long>> m_new_errors;
};

}  // namespace lkbench
