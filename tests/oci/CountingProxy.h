// SPDX-License-Identifier: Apache-2.0
// A unix socket in front of another one. It passes everything through and counts round trips: the times that
// one side speaks after the other had spoken. One client at a time; the counter may be read by any thread.
#pragma once

#include <atomic>
#include <string>
#include <thread>

#include "TemporaryFolder.h"

namespace oci_test {

class CountingProxy {
 public:
  explicit CountingProxy(std::string server_socket);
  ~CountingProxy();
  CountingProxy(const CountingProxy&) = delete;
  CountingProxy& operator=(const CountingProxy&) = delete;

  std::string SocketPath() const { return m_folder.Path() / "proxy.sock"; }

  // Requests that have been answered. Asked for between two calls of the client.
  int RoundTrips() const { return m_answers; }

 private:
  void Serve();
  void Relay(int client, int server);

  test_support::TemporaryFolder m_folder;
  const std::string m_server_socket;
  int m_listener;
  int m_stop[2];  // a pipe: closed to end the thread
  std::atomic<int> m_answers{0};
  std::thread m_thread;
};

}  // namespace oci_test
