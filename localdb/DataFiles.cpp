// SPDX-License-Identifier: Apache-2.0
#include "localdb/DataFiles.h"

#include <sys/wait.h>

#include <cerrno>
#include <cstring>
#include <fstream>

#include "localdb/ChildSetup.h"
#include "localdb/Programs.h"
#include "localdb/ServerCommand.h"
#include "localdb/ServerLog.h"
#include "localdb/Space.h"

namespace localdb {

namespace fs = std::filesystem;

namespace {

constexpr const char* kScripts[] = {"mysql_system_tables.sql", "mysql_performance_tables.sql",
                                    "mysql_system_tables_data.sql", "maria_add_gis_sp_bootstrap.sql"};

// root logs in by the socket only; the account without a name lets everybody who may enter the folder look
// in with `mariadb -S SOCKET`. Accounts can be made by statements once the privileges have been flushed.
std::string OwnScript() {
  const std::string schema = kSchema;
  const std::string account = kAccount;
  return "DELETE FROM global_priv WHERE User = 'root' AND Host <> 'localhost';\n"
         "DELETE FROM proxies_priv;\n"
         "FLUSH PRIVILEGES;\n"
         "CREATE DATABASE " +
         schema +
         " CHARACTER SET utf8mb4 COLLATE utf8mb4_nopad_bin;\n"
         "CREATE USER " +
         account +
         "@localhost;\n"
         "GRANT ALL PRIVILEGES ON " +
         schema + ".* TO " + account +
         "@localhost;\n"
         "CREATE USER ''@localhost;\n"
         "GRANT ALL PRIVILEGES ON " +
         schema + ".* TO ''@localhost;\n";
}

// A full disk is told as that, not by what it makes fail.
[[noreturn]] void FailToCreate(const Folder& folder, const Settings& settings) {
  const std::string space = SpaceProblem(folder.Path(), kSpaceToCreate + settings.log_size);
  throw LocalServerError("the data of the local database '" + folder.Path().string() +
                         "' could not be made: " + (space.empty() ? Explanation(folder.CreateLog()) : space));
}

void WriteScript(const Folder& folder, const Settings& settings) {
  const fs::path scripts = FindScripts(FindServer());
  OpenFile(folder.CreateScript(), O_WRONLY | O_CREAT | O_TRUNC);  // readable to us whatever the umask
  std::ofstream all(folder.CreateScript());
  all << "CREATE DATABASE mysql;\nUSE mysql;\nSET @auth_root_socket = NULL;\n";
  for (const char* script : kScripts) {
    std::ifstream part(scripts / script);
    all << part.rdbuf();
    if (!part) throw LocalServerError("cannot read '" + (scripts / script).string() + "'");
  }
  all << OwnScript();
  all.close();
  if (!all) FailToCreate(folder, settings);
}

struct CreateJob {
  const CommandLine& program;
  const Fd& input;
  const Fd& output;
  const Fd& start_lock;
};

[[noreturn]] void BecomeProgram(const CreateJob& job, pid_t parent) {
  setsid();  // a terminal's Ctrl-C is for the parent
  DieWith(parent);
  OwnFilesOnly();
  const int kept[] = {job.input.Get(), job.output.Get(), job.output.Get(), job.start_lock.Get()};
  KeepOnly(kept);
  ResetSignals();
  execve(job.program.Program(), job.program.Arguments(), job.program.Environment());
  _exit(127);
}

// Returns the status that wait gives; throws when the program cannot be started or the deadline passes.
int Run(const CreateJob& job, const Deadline& deadline) {
  const pid_t parent = getpid();
  const pid_t child = fork();
  if (child == 0) BecomeProgram(job, parent);
  if (child < 0) throw LocalServerError(std::string("cannot make a process: ") + std::strerror(errno));
  int status = 0;
  if (deadline.WaitFor([&] { return waitpid(child, &status, WNOHANG) != 0; })) return status;
  kill(child, SIGKILL);
  waitpid(child, &status, 0);
  return status;
}

// The program made the files without flushing any of them: all at once takes a fraction of the time. What may
// be renamed to good data is on the disk.
void Flush(const Folder& folder) {
  const Fd data = OpenFile(folder.NewData(), O_RDONLY | O_DIRECTORY);
  if (syncfs(data.Get()) != 0)
    throw LocalServerError("cannot flush '" + folder.NewData().string() +
                           "' to the disk: " + std::strerror(errno));
}

void Rename(const Folder& folder) {
  std::error_code failure;
  fs::rename(folder.NewData(), folder.Data(), failure);
  if (failure)
    throw LocalServerError("cannot rename '" + folder.NewData().string() + "' to '" + folder.Data().string() +
                           "': " + failure.message());
  fsync(OpenFile(folder.Path(), O_RDONLY | O_DIRECTORY).Get());
}

}  // namespace

void CreateData(const Folder& folder, const Settings& settings, const Fd& start_lock,
                const Deadline& deadline) {
  std::error_code ignored;
  fs::remove_all(folder.NewData(), ignored);
  fs::create_directory(folder.NewData(), ignored);
  chmod(folder.NewData().c_str(), S_IRWXU);
  WriteScript(folder, settings);
  const CommandLine program = CreateCommand(folder, settings);
  const Fd input = OpenFile(folder.CreateScript(), O_RDONLY);
  const Fd output = OpenFile(folder.CreateLog(), O_WRONLY | O_CREAT | O_TRUNC);
  if (Run({program, input, output, start_lock}, deadline) != 0) FailToCreate(folder, settings);
  Flush(folder);
  Rename(folder);
  fs::remove(folder.CreateScript(), ignored);
  fs::remove(folder.CreateLog(), ignored);
}

}  // namespace localdb
