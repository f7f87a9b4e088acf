// SPDX-License-Identifier: Apache-2.0
// A session and a transaction without a database: each call succeeds and costs nothing unless told otherwise,
// and is written down.
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "db/Xact.h"
#include "lkbench/HostSetUp.h"
#include "lkbench/Users.h"

namespace lkbench {

// What happened, over all threads, in order.
class Diary {
 public:
  void Note(const std::string& line) {
    const std::lock_guard lock(m_mutex);
    m_lines.push_back(line);
  }
  std::vector<std::string> Lines() const {
    const std::lock_guard lock(m_mutex);
    return m_lines;
  }
  int Count(const std::string& line) const {
    int count = 0;
    for (const std::string& each : Lines()) count += each == line ? 1 : 0;
    return count;
  }

 private:
  mutable std::mutex m_mutex;
  std::vector<std::string> m_lines;
};

class FakeDriver : public CDriverBase {
 public:
  explicit FakeDriver(Diary& diary) : m_diary(diary) {}

  int Connect(LKString szServer, LKString, LKString) override {
    const bool is_first = m_connections++ == 0;
    if (!is_first) m_diary.Note("connect again");
    const bool refuses = szServer == LKString(L"refuse") || (!is_first && m_refusals-- > 0);
    if (refuses) HandleErrorMsg(L"no such server");
    return refuses ? 0 : 1;
  }
  int Disconnect() override {
    if (m_disconnect) m_disconnect();
    return 1;
  }
  int IsConnected() const override { return 1; }
  int Commit() override {
    m_diary.Note("commit");
    return m_bCommits;
  }
  int Rollback() override {
    m_diary.Note("rollback");
    return 1;
  }
  int Cancel() override {
    m_diary.Note("cancel");
    return 1;
  }
  int PrepareStatement(const wchar_t*, int) override { return 1; }
  int ExecuteStatement(int) override { return 1; }
  int CloseStatement() override { return 1; }
  int Query(LKString, std::vector<std::vector<LKString>>&) override { return 1; }
  LKString GetServerVersion() override { return {}; }

  void LoseSession() { m_nLastErrorCode = 3113; }
  // Reports an error with this number, as a failed call does.
  void Fail(int code) {
    m_nLastErrorCode = code;
    CError error;
    error.m_eErrorLevel = ERROR_LEVEL;
    error.m_szErrorNumber.Format(L"%d", code);
    error.m_szErrorMessage.Format(L"ORA-%d", code);
    HandleError(&error);
  }
  std::atomic<int> m_bCommits{1};
  std::function<void()> m_disconnect;  // what ending a session does first
  int m_refusals = 0;                  // of the sessions after the first

 private:
  Diary& m_diary;
  int m_connections = 0;
};

class FakeXact : public CXact {
 public:
  explicit FakeXact(Diary& diary) : m_diary(diary) { SetName(L"Fake"); }

  int PreBenchmark() override { return Call("PreBenchmark", m_PreBenchmark); }
  int PreIteration() override { return Call("PreIteration", m_PreIteration); }
  int Execute() override { return Call("Execute", m_Execute); }
  int PostBenchmark() override { return Call("PostBenchmark", m_PostBenchmark); }

  CTimer& Timer() { return m_Timer; }

  std::function<int()> m_PreBenchmark, m_PreIteration, m_Execute, m_PostBenchmark;

 private:
  int Call(const char* name, const std::function<int()>& body) {
    m_diary.Note(name);
    return body ? body() : 1;
  }
  Diary& m_diary;
};

// A number of connected users over fake sessions.
class FakeUsers {
 public:
  explicit FakeUsers(int count)
      : m_pool([this] { return std::make_unique<FakeDriver>(m_diary); }, {"fake", "fake", "", ""}, m_log,
               m_calls),
        m_users(m_pool.Open(count)) {}

  VirtualUser& operator[](int index) { return *m_users[static_cast<size_t>(index)]; }
  int Count() const { return static_cast<int>(m_users.size()); }
  FakeDriver& Driver(int index) { return dynamic_cast<FakeDriver&>((*this)[index].Driver()); }
  Diary& Happened() { return m_diary; }
  ErrorLog& Log() { return m_log; }

 private:
  Diary m_diary;
  Console m_console;
  ErrorLog m_log{m_console};
  HostSetUp m_host{m_console, m_log};
  CallBreaker m_breaker;
  CallWatch m_calls{m_breaker};
  UserPool m_pool;
  std::vector<VirtualUser*> m_users;
};

}  // namespace lkbench
