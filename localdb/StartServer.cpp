// SPDX-License-Identifier: Apache-2.0
#include "localdb/StartServer.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <optional>

#include "localdb/Answer.h"
#include "localdb/DataFiles.h"
#include "localdb/Keeper.h"
#include "localdb/ServerCommand.h"
#include "localdb/ServerLog.h"
#include "localdb/Space.h"

namespace localdb {

namespace fs = std::filesystem;

namespace {

std::string InFolder(const Folder& folder) {
  return "the server of the local database '" + folder.Path().string() + "' ";
}

std::string HowItEnded(const KeeperReport& report) {
  if (report.kind == KeeperReport::kCannotRun)
    return std::string("could not be run: ") + std::strerror(report.value);
  if (WIFSIGNALED(report.value))
    return "was ended by signal " + std::to_string(WTERMSIG(report.value)) + " while it started";
  return "ended with code " + std::to_string(WEXITSTATUS(report.value)) + " while it started";
}

// A leftover socket would answer nothing but look like one; the log of the run before is kept.
void ClearForStart(const Folder& folder) {
  std::error_code ignored;
  fs::remove(folder.Socket(), ignored);
  fs::rename(folder.Log(), folder.OldLog(), ignored);
  mkdir(folder.Temporary().c_str(), S_IRWXU);
  chmod(folder.Temporary().c_str(), S_IRWXU);
}

// The report of a keeper that has failed, nothing while it has not.
std::optional<KeeperReport> ReadReport(const Fd& reports) {
  pollfd wait{reports.Get(), POLLIN, 0};
  if (poll(&wait, 1, 0) != 1) return std::nullopt;
  KeeperReport report{};
  if (read(reports.Get(), &report, sizeof report) == sizeof report) return report;
  return KeeperReport{KeeperReport::kServerEnded, SIGKILL};  // killed with its keeper
}

pid_t WaitForAnswer(const Folder& folder, const Fd& reports, pid_t keeper, const Deadline& deadline) {
  constexpr std::chrono::milliseconds kForGreeting(1000);
  std::optional<KeeperReport> report;
  std::optional<pid_t> server;
  const bool decided = deadline.WaitFor([&] {
    report = ReadReport(reports);
    if (!report) server = AskServer(folder.Socket(), kForGreeting);
    return report || server;
  });
  if (server) return *server;
  if (decided) waitpid(keeper, nullptr, 0);  // it has nothing left to keep
  const std::string space = SpaceProblem(folder.Path(), kSpaceToRun);
  throw LocalServerError(
      InFolder(folder) + (decided ? HowItEnded(*report) : "did not answer within " + deadline.Text()) + "; " +
      (space.empty() ? "'" + folder.Log().string() + "' says: " + Explanation(folder.Log()) : space));
}

}  // namespace

StartedServer StartServer(const Folder& folder, const Options& options, const StartLock& start_lock,
                          const Fd& server_lock, const Deadline& deadline) {
  ClearForStart(folder);
  std::error_code unknown;
  if (!fs::exists(folder.Data(), unknown)) CreateData(folder, options.settings, start_lock.File(), deadline);
  const CommandLine command = ServeCommand(folder, options);
  const fs::path users_lock = folder.UsersLock();
  const fs::path socket = folder.Socket();
  const Fd log = OpenFile(folder.Log(), O_WRONLY | O_CREAT | O_APPEND);
  Pipe reports = MakePipe();
  SignAs(server_lock, std::string("a server started by ") + program_invocation_short_name);
  const pid_t keeper = StartKeeper({command, users_lock, socket, server_lock, log, reports.write_end});
  reports.write_end.Close();
  return {keeper, WaitForAnswer(folder, reports.read_end, keeper, deadline)};
}

}  // namespace localdb
