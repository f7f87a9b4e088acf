// SPDX-License-Identifier: Apache-2.0
#include "lkbench/metrics/MetricsView.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "lkbench/Failure.h"

namespace lkbench {
namespace {

// Why the port cannot be listened on; 0: it can. The exposer itself does not tell.
int ListenError(int port) {
  const int file = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (file < 0) return errno;
  const int on = 1;
  setsockopt(file, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const bool done =
      bind(file, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 && listen(file, 1) == 0;
  const int error = done ? 0 : errno;
  close(file);
  return error;
}

[[noreturn]] void Refuse(int port, const std::string& reason) {
  throw PrepareError("metrics: port " + std::to_string(port) + " of 127.0.0.1 cannot be used: " + reason +
                     ": name another one with --metrics PORT");
}

}  // namespace

void RequireMetricsPort(int port) {
  if (const int error = ListenError(port); error != 0) Refuse(port, std::generic_category().message(error));
}

MetricsView::MetricsView(int port, RunFigures::Labels run)
    : m_figures(std::make_shared<RunFigures>(std::move(run))) {
  RequireMetricsPort(port);
  try {
    m_exposer = std::make_unique<prometheus::Exposer>("127.0.0.1:" + std::to_string(port), 2);
  } catch (const std::exception&) {
    Refuse(port, "it was taken just now, or the system gives no thread");
  }
  m_exposer->RegisterCollectable(m_figures);
}

}  // namespace lkbench
