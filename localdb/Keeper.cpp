// SPDX-License-Identifier: Apache-2.0
#include "localdb/Keeper.h"

#include <sys/file.h>
#include <sys/time.h>
#include <sys/wait.h>

#include <cerrno>
#include <cstring>

#include "localdb/Answer.h"
#include "localdb/ChildSetup.h"

namespace localdb {

namespace {

enum KeptDescriptor : int { kInput, kOutput, kErrors, kServerLock, kReport };

constexpr std::chrono::seconds kToAnswer(5);
constexpr int kSecondsToStop = 60;  // a server that has not ended by then is killed; the next start recovers

volatile std::sig_atomic_t g_asked_to_end = 0;

void OnSignal(int signal) {
  if (signal == SIGTERM) g_asked_to_end = 1;
}

void Tell(KeeperReport::Kind kind, int value) {
  const KeeperReport report{kind, value};
  [[maybe_unused]] const ssize_t ignored = write(kReport, &report, sizeof report);
}

[[noreturn]] void BecomeServer(const CommandLine& server, pid_t keeper) {
  DieWith(keeper);
  ResetSignals();
  fcntl(kReport, F_SETFD, FD_CLOEXEC);
  execve(server.Program(), server.Arguments(), server.Environment());
  Tell(KeeperReport::kCannotRun, errno);
  _exit(127);
}

// Signals interrupt the wait for the lock; the ones that a terminal or a closed pipe sends are not for us.
void SetSignals() {
  struct sigaction action {};
  action.sa_handler = SIG_IGN;
  for (const int signal : {SIGINT, SIGQUIT, SIGHUP, SIGPIPE, SIGTSTP}) sigaction(signal, &action, nullptr);
  action.sa_handler = OnSignal;
  for (const int signal : {SIGTERM, SIGCHLD, SIGALRM}) sigaction(signal, &action, nullptr);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

bool HasEnded(pid_t server, int* status) { return waitpid(server, status, WNOHANG) != 0; }

// Returns true when the server is to be stopped, false when it has ended by itself (status says how). The
// alarm each second covers a signal that comes between the question and the wait.
bool WaitForLastUser(pid_t server, int users, int* status) {
  const itimerval every_second{{1, 0}, {1, 0}};
  setitimer(ITIMER_REAL, &every_second, nullptr);
  while (true) {
    if (HasEnded(server, status)) return false;
    if (g_asked_to_end != 0 || flock(users, LOCK_EX) == 0 || errno != EINTR) return true;
  }
}

bool Answers(const std::filesystem::path& socket) {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  sigprocmask(SIG_BLOCK, &all, &before);  // the alarm would cut the question short
  const bool answers = AskServer(socket, kToAnswer).has_value();
  sigprocmask(SIG_SETMASK, &before, nullptr);
  return answers;
}

// A server that is asked to end while it still starts may hang for ever, and holds nothing that anybody could
// have committed: it is killed. The alarm of WaitForLastUser still ticks and interrupts the wait each second.
void Stop(pid_t server, const std::filesystem::path& socket) {
  int status = 0;
  if (Answers(socket)) {
    kill(server, SIGTERM);
    for (int seconds = 0; seconds < kSecondsToStop; ++seconds)
      if (waitpid(server, &status, 0) == server) return;
  }
  kill(server, SIGKILL);
  while (waitpid(server, &status, 0) < 0 && errno == EINTR) continue;
}

[[noreturn]] void Keep(const KeeperJob& job) {
  setsid();
  prctl(PR_SET_NAME, "localdb-keeper");
  OwnFilesOnly();
  const int null = open("/dev/null", O_RDWR | O_CLOEXEC);
  const int kept[] = {null, job.log.Get(), job.log.Get(), job.server_lock.Get(), job.report.Get()};
  KeepOnly(kept);
  SetSignals();
  const int users = open(job.users_lock.c_str(), O_RDONLY | O_CLOEXEC);
  [[maybe_unused]] const int ignored = chdir("/");

  const pid_t keeper = getpid();
  const pid_t server = users >= 0 ? fork() : -1;
  if (server == 0) BecomeServer(job.server, keeper);
  if (server < 0) {
    Tell(KeeperReport::kCannotRun, errno);
    _exit(1);
  }
  int status = 0;
  if (WaitForLastUser(server, users, &status)) {
    Stop(server, job.socket);
  } else {
    Tell(KeeperReport::kServerEnded, status);
  }
  _exit(0);
}

}  // namespace

pid_t StartKeeper(const KeeperJob& job) {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  sigprocmask(SIG_BLOCK, &all, &before);  // no handler of this process may run in the keeper
  const pid_t keeper = fork();
  if (keeper == 0) Keep(job);
  const int reason = errno;
  sigprocmask(SIG_SETMASK, &before, nullptr);
  if (keeper < 0) throw LocalServerError(std::string("cannot make a process: ") + std::strerror(reason));
  return keeper;
}

}  // namespace localdb
