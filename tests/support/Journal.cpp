// SPDX-License-Identifier: Apache-2.0
#include "Journal.h"

#include <algorithm>
#include <atomic>
#include <iterator>

namespace scripted {

namespace {

std::atomic<Journal*> g_journal{nullptr};
thread_local int t_quiet = 0;

// AddIgnoreError is built into its callers and cannot be tapped: the list itself is compared. Naming a
// private member in an explicit instantiation is allowed; the friend function hands it out.
using IgnoreList = std::multiset<int> CDriverBase::*;
template <IgnoreList kMember>
struct Opened {
  friend std::multiset<int>& IgnoredErrorsOf(CDriverBase& driver) { return driver.*kMember; }
};
std::multiset<int>& IgnoredErrorsOf(CDriverBase& driver);
template struct Opened<&CDriverBase::m_IgnoredErrors>;

void AppendMissing(const std::multiset<int>& from, const std::multiset<int>& in, const std::string& call,
                   Events& events) {
  std::vector<int> missing;
  std::ranges::set_difference(from, in, std::back_inserter(missing));
  for (const int code : missing) events.push_back(call + "(" + std::to_string(code) + ")");
}

}  // namespace

Journal::Journal() { g_journal = this; }
Journal::~Journal() { g_journal = nullptr; }

void Journal::WatchIgnoreList(CDriverBase& driver) {
  m_pDriver = &driver;
  m_ignored = IgnoredErrorsOf(driver);
}

Events Journal::All() {
  const std::lock_guard lock(m_mutex);
  AddIgnoreListChanges();
  return m_events;
}

void Journal::Clear() {
  const std::lock_guard lock(m_mutex);
  AddIgnoreListChanges();
  m_events.clear();
}

void Journal::Note(const std::string& event) {
  if (!IsQuiet()) NoteAlways(event);
}

void Journal::NoteAlways(const std::string& event) {
  Journal* journal = g_journal;
  if (journal != nullptr) journal->Add(event);
}

void Journal::NoteIgnoreList() {
  Journal* journal = g_journal;
  if (journal == nullptr) return;
  const std::lock_guard lock(journal->m_mutex);
  journal->AddIgnoreListChanges();
}

void Journal::Add(const std::string& event) {
  const std::lock_guard lock(m_mutex);
  AddIgnoreListChanges();
  m_events.push_back(event);
}

void Journal::AddIgnoreListChanges() {
  if (m_pDriver == nullptr) return;
  const std::multiset<int>& now = IgnoredErrorsOf(*m_pDriver);
  AppendMissing(m_ignored, now, "RemoveIgnoreError", m_events);
  AppendMissing(now, m_ignored, "AddIgnoreError", m_events);
  m_ignored = now;
}

Quiet::Quiet() { ++t_quiet; }
Quiet::~Quiet() { --t_quiet; }
bool IsQuiet() { return t_quiet > 0; }

}  // namespace scripted
