// SPDX-License-Identifier: Apache-2.0
// The thread that interrupts calls. One serves all environments of the process: it starts with the first
// break, keeps one control connection to each server and account that it was needed for, and ends with the
// last environment. A KILL QUERY that the server loses (inside a stored block it may) is sent again every
// ten milliseconds until the call has returned.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <tuple>
#include <vector>

#include "oci/mariadb/Connection.h"

namespace ocimaria {

class Breaker {
 public:
  // The one of the process; it lives as long as somebody holds it.
  static std::shared_ptr<Breaker> Shared();

  Breaker() = default;
  ~Breaker();
  Breaker(const Breaker&) = delete;
  Breaker& operator=(const Breaker&) = delete;

  // Asks for an interrupt of what the connection is executing and returns at once. Nothing on an idle one.
  void Break(const std::shared_ptr<Connection>& connection);

 private:
  struct Request {
    std::weak_ptr<Connection> connection;
    std::uint64_t call;
  };
  using ControlKey = std::tuple<std::string, std::string>;  // server, user

  void Work();
  bool Serve(const Request& request);  // false: needs no further attempt

  std::mutex m_mutex;
  std::condition_variable m_wake;
  std::vector<Request> m_requests;
  bool m_ending = false;
  std::thread m_thread;
  std::map<ControlKey, std::unique_ptr<Connection>> m_controls;  // the thread's own
};

}  // namespace ocimaria
