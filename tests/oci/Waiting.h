// SPDX-License-Identifier: Apache-2.0
// A call on a thread of its own that is expected to wait for another session.
#pragma once

#include <chrono>
#include <future>
#include <stdexcept>
#include <string>
#include <thread>

#include "Client.h"

namespace oci_test {

class WaitingCall {
 public:
  // Executes the text on `client` and returns when the server says that it has been at it for a while
  // (`watcher` asks).
  WaitingCall(Client& client, Client& watcher, const std::string& text)
      : m_id(Value(client, "SELECT CONNECTION_ID() FROM DUAL")),
        m_status(std::async(std::launch::async, [&client, text] { return Exec(client, text); })) {
    while (!Waits(watcher)) {
      if (m_status.wait_for(std::chrono::milliseconds(5)) == std::future_status::ready)
        throw std::runtime_error("did not wait: " + text + ": " + client.LastReport().text);
    }
  }
  sword Status() { return m_status.get(); }  // waits for the call

 private:
  bool Waits(Client& watcher) const {
    return Value(
               watcher,
               "SELECT COUNT(*) FROM INFORMATION_SCHEMA.PROCESSLIST WHERE INFO IS NOT NULL AND TIME_MS > 20 "
               "AND ID = " +
                   m_id) == "1";
  }

  const std::string m_id;
  std::future<sword> m_status;
};

}  // namespace oci_test
