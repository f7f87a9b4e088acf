// SPDX-License-Identifier: Apache-2.0
#include "Processes.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace {

struct FromChild {
  int server_pid;
  int started;
  char error[500];
};

void Tell(int to_parent, const FromChild& message) {
  [[maybe_unused]] const ssize_t ignored = write(to_parent, &message, sizeof message);
}

[[noreturn]] void BeUser(const std::filesystem::path& folder, const std::function<void()>& before,
                         int to_parent, int from_parent) {
  FromChild message{};
  try {
    if (before) before();
    const localdb::LocalServer server(folder);
    message.server_pid = server.ServerPid();
    message.started = server.Started() ? 1 : 0;
    Tell(to_parent, message);
    char end = 0;
    while (read(from_parent, &end, 1) < 0 && errno == EINTR) continue;
  } catch (const std::exception& error) {
    std::string(error.what()).copy(message.error, sizeof message.error - 1);
    Tell(to_parent, message);
  }
  _exit(0);
}

}  // namespace

UserProcess::UserProcess(const std::filesystem::path& folder, const std::function<void()>& before) {
  int up[2];
  int down[2];
  if (pipe2(up, O_CLOEXEC) != 0 || pipe2(down, O_CLOEXEC) != 0) throw std::runtime_error("no pipe");
  m_pid = fork();
  if (m_pid == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);  // nothing is left of a test that is killed
    close(up[0]);
    close(down[1]);
    BeUser(folder, before, up[1], down[0]);
  }
  close(up[1]);
  close(down[0]);
  m_from_child = up[0];
  m_to_child = down[1];
}

UserProcess::~UserProcess() {
  Leave();
  close(m_from_child);
}

int UserProcess::ServerPid() {
  WaitUntilIn();
  return m_server_pid;
}

bool UserProcess::Started() {
  WaitUntilIn();
  return m_started;
}

void UserProcess::WaitUntilIn() {
  if (m_server_pid != 0) return;
  FromChild message{};
  if (read(m_from_child, &message, sizeof message) != sizeof message)
    throw std::runtime_error("the user has ended");
  if (message.server_pid == 0) throw std::runtime_error(message.error);
  m_server_pid = message.server_pid;
  m_started = message.started != 0;
}

void UserProcess::Leave() {
  if (m_pid == 0) return;
  // Closing alone would not do: users forked later have inherited the end.
  [[maybe_unused]] const ssize_t ignored = write(m_to_child, "x", 1);
  close(m_to_child);
  Reap();
}

void UserProcess::Kill(int signal) {
  kill(m_pid, signal);
  close(m_to_child);
  Reap();
}

void UserProcess::Reap() {
  waitpid(m_pid, nullptr, 0);
  m_pid = 0;
}

namespace {

// The fields behind the program's name, which may hold spaces: state, parent, …
std::istringstream Status(pid_t process) {
  const std::string text = ReadFile("/proc/" + std::to_string(process) + "/stat");
  const std::size_t end = text.rfind(')');
  return std::istringstream(end == std::string::npos ? "" : text.substr(end + 1));
}

}  // namespace

bool IsRunning(pid_t process) {
  char state = 'X';
  Status(process) >> state;
  return state != 'X' && state != 'Z';
}

pid_t ParentOf(pid_t process) {
  char state = 0;
  pid_t parent = 0;
  Status(process) >> state >> parent;
  return parent;
}

bool Eventually(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

std::string ErrorOf(const std::filesystem::path& folder, const localdb::Options& options) {
  try {
    const localdb::LocalServer server(folder, options);
    return "";
  } catch (const localdb::LocalServerError& error) {
    return error.what();
  }
}

std::string ReadFile(const std::filesystem::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}
