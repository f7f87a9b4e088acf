// SPDX-License-Identifier: Apache-2.0
// What a child does between fork and exec, or in the keeper's case for its whole life. Only async-signal-safe
// calls: the parent may have had threads. Inline, so that nothing is bound lazily in the child.
#pragma once

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <span>

namespace localdb {

// Makes descriptors[i] the descriptor i, open across exec, and closes all others.
inline void KeepOnly(std::span<const int> descriptors) {
  constexpr int kAside = 64;
  constexpr std::size_t kMost = 8;
  int aside[kMost];
  for (std::size_t i = 0; i < descriptors.size() && i < kMost; ++i)
    aside[i] = fcntl(descriptors[i], F_DUPFD, kAside);
  for (std::size_t i = 0; i < descriptors.size() && i < kMost; ++i) dup2(aside[i], static_cast<int>(i));
  const auto first_other = static_cast<unsigned>(descriptors.size());
  if (close_range(first_other, ~0U, 0) == 0) return;
  constexpr int kMostOpen = 65536;  // the limit itself may be a thousand million
  for (int fd = static_cast<int>(first_other); fd < kMostOpen; ++fd) close(fd);
}

// Ended by the kernel when the parent ends; at once when the parent has ended already.
inline void DieWith(pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(0);
}

// A program starts with the usual signals, whatever its parents ignored or blocked.
inline void ResetSignals() {
  struct sigaction usual {};
  usual.sa_handler = SIG_DFL;
  for (int signal = 1; signal < 32; ++signal) sigaction(signal, &usual, nullptr);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

inline void OwnFilesOnly() { umask(S_IRWXG | S_IRWXO); }

}  // namespace localdb
