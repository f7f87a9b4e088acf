// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/RunNotes.h"

#include <algorithm>

namespace lkbench {

void RunNotes::SetOrigin(TimePoint origin) {
  const std::lock_guard lock(m_mutex);
  m_origin = origin;
}

std::uint64_t RunNotes::Offset(TimePoint time) const {
  return static_cast<std::uint64_t>(std::chrono::nanoseconds(std::max(time, m_origin) - m_origin).count());
}

void RunNotes::NoteFailure(TimePoint time, ErrorClass error_class, long code, const std::string& text) {
  const std::lock_guard lock(m_mutex);
  auto key = std::pair(error_class, code);
  if (m_errors.size() >= kMostErrors && !m_errors.contains(key)) key.second = 0;
  const auto [place, is_new] =
      m_errors.try_emplace(key, ErrorRecord{error_class, key.second, 0, Offset(time), 0, text});
  if (is_new) m_new_errors.push_back(key);
  ErrorRecord& error = place->second;
  ++error.count;
  error.first = std::min(error.first, Offset(time));
  error.last = std::max(error.last, Offset(time));
}

void RunNotes::NoteEvent(EventKind kind, TimePoint begin, TimePoint end, int user, const std::string& text) {
  const std::lock_guard lock(m_mutex);
  if (m_events.size() >= kMostEvents) {
    ++m_more_events;
    return;
  }
  m_events.push_back({kind, Offset(begin), Offset(end) - Offset(begin), user, text});
}

RunNotes::News RunNotes::TakeNews() {
  const std::lock_guard lock(m_mutex);
  News news;
  news.events.assign(m_events.begin() + static_cast<std::ptrdiff_t>(m_told_events), m_events.end());
  m_told_events = m_events.size();
  for (const auto& key : m_new_errors) news.errors.push_back(m_errors.at(key));
  m_new_errors.clear();
  return news;
}

void RunNotes::Write(RunRecord& record) const {
  const std::lock_guard lock(m_mutex);
  record.errors.clear();
  for (const auto& [key, error] : m_errors) record.errors.push_back(error);
  std::ranges::stable_sort(record.errors, {}, &ErrorRecord::first);
  record.events = m_events;
  std::ranges::stable_sort(record.events, {}, &Event::begin);
  record.more_events = m_more_events;
}

}  // namespace lkbench
