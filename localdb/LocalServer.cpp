// SPDX-License-Identifier: Apache-2.0
#include "localdb/LocalServer.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>

#include <cctype>
#include <optional>

#include "localdb/Answer.h"
#include "localdb/DataFiles.h"
#include "localdb/Deadline.h"
#include "localdb/Fd.h"
#include "localdb/Folder.h"
#include "localdb/Space.h"
#include "localdb/StartLock.h"
#include "localdb/StartServer.h"

namespace localdb {

namespace fs = std::filesystem;

struct LocalServer::State {
  explicit State(const fs::path& path) : folder(path) {}

  void Enter(const Options& options);
  void Leave() noexcept;

  localdb::Folder folder;
  Fd users;  // holds the users' lock, shared
  std::chrono::seconds patience{};
  std::optional<pid_t> keeper;  // when this process is its parent
  pid_t server = 0;
  bool started = false;

 private:
  void ShareUsersLock(const Deadline& deadline);
  bool TryStart(const Options& options, const StartLock& start_lock, const Deadline& deadline);
  bool TryJoin();
  bool IsServerGone() const;
  bool HasOthers() const;
};

void LocalServer::State::Enter(const Options& options) {
  patience = options.patience;
  const Deadline deadline(patience);
  folder.Prepare();
  const StartLock start_lock(folder, deadline);
  ShareUsersLock(deadline);
  // Neither starting nor joining goes while a server ends that was killed, or whose keeper was.
  if (!deadline.WaitFor([&] { return TryStart(options, start_lock, deadline) || TryJoin(); }))
    throw LocalServerError("the local database '" + folder.Path().string() +
                           "' cannot be joined: it is held by " + ReadSigner(folder.ServerLock()) +
                           ", and its server does not answer on '" + folder.Socket().string() + "'");
}

// The keeper holds it alone while it stops the server.
void LocalServer::State::ShareUsersLock(const Deadline& deadline) {
  users = OpenFile(folder.UsersLock(), O_RDWR | O_CREAT);
  if (!deadline.WaitFor([&] { return TryLock(users, LOCK_SH); }))
    throw LocalServerError("the local database '" + folder.Path().string() +
                           "' cannot be joined: its server is being stopped and did not end within " +
                           deadline.Text());
}

bool LocalServer::State::TryStart(const Options& options, const StartLock& start_lock,
                                  const Deadline& deadline) {
  const Fd server_lock = OpenFile(folder.ServerLock(), O_RDWR | O_CREAT);
  if (!TryLock(server_lock, LOCK_EX)) return false;
  const StartedServer running = StartServer(folder, options, start_lock, server_lock, deadline);
  keeper = running.keeper;
  server = running.server;
  started = true;
  return true;
}

bool LocalServer::State::TryJoin() {
  const std::optional<pid_t> running = AskServer(folder.Socket(), std::chrono::milliseconds(1000));
  if (running) server = *running;
  return running.has_value();
}

bool LocalServer::State::IsServerGone() const {
  return TryLock(OpenFile(folder.ServerLock(), O_RDWR | O_CREAT), LOCK_SH);
}

// Others share the users' lock: then it cannot be had alone, yet shared. (The keeper, once it stops the
// server, has it alone.) Nothing is held afterwards.
bool LocalServer::State::HasOthers() const {
  const bool others = !TryLock(users, LOCK_EX) && TryLock(users, LOCK_SH);
  flock(users.Get(), LOCK_UN);
  return others;
}

// Somebody may come between the release of the lock and the keeper's taking it: then the server stays.
void LocalServer::State::Leave() noexcept {
  bool others = false;
  try {
    const Deadline deadline(patience);
    const bool decided = deadline.WaitFor([&] {
      others = HasOthers();
      return others || IsServerGone();
    });
    users.Close();
    if (decided && !others && keeper) waitpid(*keeper, nullptr, 0);
  } catch (const LocalServerError&) {
    users.Close();  // the folder is gone: the keeper does the rest on its own
  }
}

namespace {

std::string PercentEncoded(const std::string& text) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string encoded;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80 && (std::isalnum(byte) != 0 || std::string("/._-~").find(c) != std::string::npos)) {
      encoded += c;
    } else {
      encoded += '%';
      encoded += kDigits[byte >> 4U];
      encoded += kDigits[byte & 15U];
    }
  }
  return encoded;
}

}  // namespace

LocalServer::LocalServer(const fs::path& folder, const Options& options)
    : m_state(std::make_unique<State>(folder)) {
  m_state->Enter(options);
}

LocalServer::~LocalServer() { m_state->Leave(); }

const fs::path& LocalServer::Folder() const { return m_state->folder.Path(); }
fs::path LocalServer::SocketPath() const { return m_state->folder.Socket(); }
std::string LocalServer::ConnectString() const {
  return std::string("mariadb:///") + kSchema + "?socket=" + PercentEncoded(SocketPath().string());
}
std::string LocalServer::User() const { return kAccount; }
std::string LocalServer::Password() const { return ""; }
int LocalServer::ServerPid() const { return m_state->server; }
std::string LocalServer::SpaceProblem() const {
  return localdb::SpaceProblem(m_state->folder.Path(), kSpaceToRun);
}
bool LocalServer::Started() const { return m_state->started; }

}  // namespace localdb
