// SPDX-License-Identifier: Apache-2.0
// Processes of tests: users of a local database that can be killed, and what the system knows of others.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <string>

#include "localdb/LocalServer.h"

// A child process that uses a local database until it is told to leave, killed, or goes with the object.
class UserProcess {
 public:
  // Runs `before` in the child first. Returns at once: the child may still be starting the server.
  explicit UserProcess(const std::filesystem::path& folder, const std::function<void()>& before = {});
  ~UserProcess();
  UserProcess(const UserProcess&) = delete;
  UserProcess& operator=(const UserProcess&) = delete;

  pid_t Pid() const { return m_pid; }
  // Wait until the child is a user; throw std::runtime_error with its text if it could not become one.
  int ServerPid();
  bool Started();

  void Leave();               // by the destructor of its LocalServer; waits for the end
  void Kill(int signal = 9);  // waits for the end

 private:
  void WaitUntilIn();
  void Reap();

  pid_t m_pid;
  int m_from_child;
  int m_to_child;
  int m_server_pid = 0;
  bool m_started = false;
};

bool IsRunning(pid_t process);  // a zombie is not
pid_t ParentOf(pid_t process);

// Looks every few milliseconds until the condition holds; false after half a minute.
bool Eventually(const std::function<bool()>& condition);

// The text of the LocalServerError that becoming a user throws, "" when it throws none.
std::string ErrorOf(const std::filesystem::path& folder, const localdb::Options& options = {});

std::string ReadFile(const std::filesystem::path& file);
