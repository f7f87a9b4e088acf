// SPDX-License-Identifier: Apache-2.0
// Listens on loopback, accepts, and then says nothing, or only the greeting that a server begins with.
#pragma once

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <stdexcept>
#include <string>
#include <thread>

namespace oci_test {

class SilentServer {
 public:
  enum Silence { kFromTheBegin, kAfterTheGreeting };

  explicit SilentServer(Silence silence) : m_listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    const auto any = reinterpret_cast<sockaddr*>(&address);
    if (bind(m_listener, any, size) != 0 || listen(m_listener, 5) != 0 ||
        getsockname(m_listener, any, &size) != 0)
      throw std::runtime_error("cannot listen on loopback");
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this, silence] { Serve(silence); });
  }
  ~SilentServer() {
    shutdown(m_listener, SHUT_RDWR);
    m_thread.join();
    close(m_listener);
  }
  SilentServer(const SilentServer&) = delete;
  SilentServer& operator=(const SilentServer&) = delete;

  std::string ConnectString() const { return "mariadb://127.0.0.1:" + std::to_string(m_port) + "/s"; }

 private:
  // Reads what comes until the client is gone, one client after the other.
  void Serve(Silence silence) {
    for (int client; (client = accept(m_listener, nullptr, nullptr)) >= 0; close(client)) {
      if (silence == kAfterTheGreeting) send(client, Greeting().data(), Greeting().size(), MSG_NOSIGNAL);
      char drain[512];
      while (recv(client, drain, sizeof drain, 0) > 0) continue;
    }
  }

  // Protocol 10: version, connection, salt, capabilities, character set, status, the plug-in that logs in.
  static std::string Greeting() {
    using namespace std::string_literals;
    const std::string body = "\x0a"s + "10.11.0-MariaDB\0"s + "\x01\0\0\0"s + "saltsalt\0"s + "\xff\xf7"s +
                             "\x2d"s + "\x02\0"s + "\xff\x81"s + "\x15"s + std::string(10, '\0') +
                             "saltsaltsalt\0"s + "mysql_native_password\0"s;
    return std::string(1, static_cast<char>(body.size())) + "\0\0\0"s + body;
  }

  int m_listener;
  int m_port = 0;
  std::thread m_thread;
};

}  // namespace oci_test
