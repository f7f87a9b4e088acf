// SPDX-License-Identifier: Apache-2.0
// Virtual users and their database sessions. A user owns its driver and the end of its error chain; both
// belong to one thread at a time. UserPool opens them on the calling thread and closes them when it goes.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "db/DriverBase.h"
#include "lkbench/CallWatch.h"
#include "lkbench/ErrorLog.h"

namespace lkbench {

struct ConnectData {
  std::string shown;  // for messages
  std::string server;
  std::string user;
  std::string password;
};

class VirtualUser {
 public:
  // Connects; throws PrepareError with what the database said.
  VirtualUser(int number, std::unique_ptr<CDriverBase> driver, const ConnectData& connect, ErrorLog& log,
              CallWatch& calls);
  ~VirtualUser();
  VirtualUser(const VirtualUser&) = delete;
  VirtualUser& operator=(const VirtualUser&) = delete;

  int Number() const { return m_number; }  // 1-based
  CDriverBase& Driver() { return *m_driver; }
  ErrorLog& Log() { return m_log; }

  // The calls of this thread are the user's while it lives: the user at work, or the first one's session as
  // that of lkbench itself.
  CallWatch::Work AtWork();
  CallWatch::Work ForLkbench();

  // Calls of lkbench's own. Each statement throws PrepareError with the target and what the database said.
  std::string ServerVersion();
  void Run(const std::string& sql);
  std::vector<std::vector<std::string>> Query(const std::string& sql);

  // Ends what a failed or broken call left open; its own failure says nothing new.
  void RollBack();

  // An error that the user's thread noticed itself, such as an exception.
  void Report(const std::string& text);

  // The first error with a number since ForgetError, else the first one.
  LastError Error() const;
  void ForgetError();

  // Ends the session, as far as there is one, and opens a new one. What had belonged to the old one is gone.
  bool Reopen();
  UserErrors::Catch Quietly() { return UserErrors::Catch(m_errors); }

  // Whether the database's last error means that the session is gone.
  bool LostSession() const;

 private:
  bool Connect();
  [[noreturn]] void Fail(const std::string& reason, const std::string& sql) const;

  int m_number;
  ConnectData m_connect;
  ErrorLog& m_log;
  CallWatch& m_calls;
  UserErrors m_errors;
  std::unique_ptr<CDriverBase> m_driver;  // after the chain's end that it refers to
};

class UserPool {
 public:
  using DriverFactory = std::function<std::unique_ptr<CDriverBase>()>;
  UserPool(DriverFactory new_driver, ConnectData connect, ErrorLog& log, CallWatch& calls)
      : m_new_driver(std::move(new_driver)), m_connect(std::move(connect)), m_log(log), m_calls(calls) {}

  CallWatch& Calls() { return m_calls; }
  VirtualUser& First() { return *Open(1).front(); }
  // The first `count` users, connected.
  std::vector<VirtualUser*> Open(int count);
  // Ends all sessions. False when the database has not let them end within that time: then a thread of its
  // own still waits for it, and what the pool was made from must live as long as the process.
  bool Close(std::chrono::nanoseconds patience);

 private:
  DriverFactory m_new_driver;
  ConnectData m_connect;
  ErrorLog& m_log;
  CallWatch& m_calls;
  std::vector<std::unique_ptr<VirtualUser>> m_users;
};

}  // namespace lkbench
