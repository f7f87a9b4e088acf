// SPDX-License-Identifier: Apache-2.0
// LocalServer is a private mariadbd that lives in one folder and is reached by a unix socket in it. The first
// user of a folder creates and starts it, later users (of any process) join it, and it stops when the last
// one is gone, however that one ended: a keeper process holds the server, waits on a lock that every user
// shares, and the kernel stops the server when the keeper dies. An object is one user; it is not thread-safe.
// Create it before the process starts threads.
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "localdb/Settings.h"

namespace localdb {

// One clear line: what is wrong, where, what would be right.
class LocalServerError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct Options {
  Settings settings;  // used by whoever starts the server: a running one keeps its own
  std::vector<std::string> server_arguments;  // added to the server's command line; used by whoever starts it
  int tcp_port = 0;                           // 0: socket only; else loopback TCP too (tests)
  std::chrono::seconds patience{120};         // for a server that recovers, or that somebody else stops
};

class LocalServer {
 public:
  // Creates the folder and its data when there are none, starts or joins the server and waits until it
  // answers. Throws LocalServerError.
  explicit LocalServer(const std::filesystem::path& folder, const Options& options = {});
  ~LocalServer();  // leaves; the last user waits until the server has stopped
  LocalServer(const LocalServer&) = delete;
  LocalServer& operator=(const LocalServer&) = delete;

  const std::filesystem::path& Folder() const;
  std::filesystem::path SocketPath() const;
  std::string ConnectString() const;  // "mariadb:///SCHEMA?socket=…" for the OCI library
  std::string User() const;           // the account and schema that the benchmark works in
  std::string Password() const;       // empty: the socket is in a folder that only its owner may enter
  int ServerPid() const;              // of mariadbd, for tests and messages
  std::string SpaceProblem() const;   // says so when the disk is full, or nearly; empty otherwise
  bool Started() const;               // this object started it (false: joined a running one)

 private:
  struct State;
  std::unique_ptr<State> m_state;
};

}  // namespace localdb
