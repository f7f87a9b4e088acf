// SPDX-License-Identifier: Apache-2.0
#include "lkbench/CallWatch.h"

#include <unistd.h>

#include <algorithm>

#include "lkbench/Text.h"
#include "lkbench/workload/TableWatch.h"

namespace lkbench {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kBreakEvery{1};  // leaves a broken call the time to roll back

thread_local CallWatch::Work* t_work = nullptr;

// Not waited for: the process ends with the thread in here.
[[noreturn]] void StopForGood() {
  while (true) pause();
}

}  // namespace

CallWatch::Work::Work(CallWatch& watch, CDriverBase& driver, std::string who)
    : m_watch(watch), m_driver(driver), m_who(std::move(who)), m_outer(t_work) {
  const std::lock_guard lock(m_watch.m_mutex);
  m_watch.m_works.push_back(this);
  t_work = this;
}

CallWatch::Work::~Work() {
  Count(0, 0);
  const std::lock_guard lock(m_watch.m_mutex);
  std::erase(m_watch.m_works, this);
  t_work = m_outer;
}

void CallWatch::Work::Begin(const char* doing, const void* statement) {
  const bool has_text = statement != nullptr && statement == m_prepared;
  std::unique_lock lock(m_watch.m_mutex);
  if (m_watch.m_is_given_up) {
    lock.unlock();
    StopForGood();
  }
  m_doing = has_text ? std::string(doing) + ' ' + m_text : doing;
  m_since = Clock::now();
  m_broken = {};
}

void CallWatch::Work::End() {
  std::unique_lock lock(m_watch.m_mutex);
  if (m_watch.m_is_given_up) {
    lock.unlock();
    StopForGood();
  }
  m_since = {};
}

void CallWatch::Work::Count(int table, std::uint64_t rows) {
  const std::lock_guard lock(m_watch.m_mutex);
  m_watch.m_done.rows += rows;
  if (table == m_table) return;
  if (m_table > 0) ++m_watch.m_done.tables;
  m_table = table;
}

CallWatch::Tally CallWatch::Done() {
  const std::lock_guard lock(m_mutex);
  return m_done;
}

std::vector<CallWatch::Call> CallWatch::BreakBegunBefore(TimePoint moment) {
  const std::lock_guard lock(m_mutex);
  const TimePoint now = Clock::now();
  std::vector<Call> broken;
  for (Work* work : m_works) {
    if (work->m_since == TimePoint{} || work->m_since >= moment || now < work->m_broken + kBreakEvery)
      continue;
    if (work->m_broken == TimePoint{}) broken.push_back({work->m_who, work->m_doing, work->m_since});
    work->m_broken = now;
    work->m_driver.Cancel();
  }
  return broken;
}

std::optional<CallWatch::Call> CallWatch::GiveUpBegunBefore(TimePoint moment) {
  const std::lock_guard lock(m_mutex);
  const Work* oldest = nullptr;
  for (const Work* work : m_works)
    if (work->m_since != TimePoint{} && work->m_since < (oldest == nullptr ? moment : oldest->m_since))
      oldest = work;
  if (oldest == nullptr) return std::nullopt;
  m_is_given_up = true;
  return Call{oldest->m_who, oldest->m_doing, oldest->m_since};
}

CallNote::CallNote(const char* doing, const void* statement)
    : m_work(t_work != nullptr && t_work->m_since == CallWatch::TimePoint{} ? t_work : nullptr) {
  if (m_work != nullptr) m_work->Begin(doing, statement);
}

CallNote::~CallNote() {
  if (m_work != nullptr) m_work->End();
}

void NoteCallText(const void* statement, std::string_view text) {
  if (t_work == nullptr) return;
  t_work->m_prepared = statement;
  t_work->m_text = Excerpt(text);
}

void NoteCallDone(const void* statement, std::uint64_t rows) {
  if (t_work == nullptr || statement != t_work->m_prepared) return;
  if (const int table = TableNumberIn(t_work->m_text); table > 0) t_work->Count(table, rows);
}

bool CallsAreNoted() { return t_work != nullptr; }

}  // namespace lkbench
