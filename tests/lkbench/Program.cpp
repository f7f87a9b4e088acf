// SPDX-License-Identifier: Apache-2.0
#include "Program.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace {

std::filesystem::path NewFile() {
  std::string name = std::filesystem::temp_directory_path() / "lkbench-text-XXXXXX";
  const int file = mkstemp(name.data());
  if (file < 0) throw std::runtime_error("cannot make a file like " + name);
  close(file);
  return name;
}

std::string Content(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

// In the child, between fork and exec.
[[noreturn]] void Become(std::vector<char*>& arguments, const char* out, const char* err) {
  dup2(open(out, O_WRONLY | O_TRUNC), STDOUT_FILENO);
  dup2(open(err, O_WRONLY | O_TRUNC), STDERR_FILENO);
  execv(LKBENCH_PROGRAM, arguments.data());
  _exit(127);
}

}  // namespace

Program::Program(const std::vector<std::string>& arguments) : m_out(NewFile()), m_err(NewFile()) {
  std::vector<std::string> words = arguments;
  words.insert(words.begin(), LKBENCH_PROGRAM);
  std::vector<char*> pointers;
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  m_pid = fork();
  if (m_pid == 0) Become(pointers, m_out.c_str(), m_err.c_str());
  if (m_pid < 0) throw std::runtime_error("cannot make a process");
}

Program::~Program() {
  if (m_pid > 0) {
    kill(m_pid, SIGKILL);
    waitpid(m_pid, nullptr, 0);
  }
  std::error_code ignored;
  std::filesystem::remove(m_out, ignored);
  std::filesystem::remove(m_err, ignored);
}

void Program::Signal(int signal) const { kill(m_pid, signal); }

std::string Program::OutSoFar() const { return Content(m_out); }

bool Program::WaitFor(const std::function<bool()>& condition) const {
  using namespace std::chrono;
  for (const auto end = steady_clock::now() + seconds(30); steady_clock::now() < end;) {
    if (condition()) return true;
    siginfo_t info{};
    if (waitid(P_PID, static_cast<id_t>(m_pid), &info, WEXITED | WNOHANG | WNOWAIT) != 0 || info.si_pid != 0)
      return false;
    std::this_thread::sleep_for(milliseconds(5));
  }
  return false;
}

Outcome Program::Wait() {
  int status = 0;
  waitpid(m_pid, &status, 0);
  m_pid = 0;
  Outcome outcome;
  if (WIFEXITED(status)) outcome.code = WEXITSTATUS(status);
  if (WIFSIGNALED(status)) outcome.signal = WTERMSIG(status);
  outcome.out = Content(m_out);
  outcome.err = Content(m_err);
  return outcome;
}

Outcome RunProgram(const std::vector<std::string>& arguments) { return Program(arguments).Wait(); }
