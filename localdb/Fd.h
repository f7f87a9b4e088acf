// SPDX-License-Identifier: Apache-2.0
// Fd owns a file descriptor. Every descriptor made here is closed on exec and lies above the three standard
// ones, so that a program whose stdout is closed never prints into a lock file.
#pragma once

#include <filesystem>
#include <utility>

namespace localdb {

class Fd {
 public:
  Fd() = default;
  explicit Fd(int fd) : m_fd(fd) {}
  Fd(Fd&& other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
  Fd& operator=(Fd&& other) noexcept {
    std::swap(m_fd, other.m_fd);
    return *this;
  }
  ~Fd() { Close(); }

  int Get() const { return m_fd; }
  bool IsOpen() const { return m_fd >= 0; }
  void Close();

 private:
  int m_fd = -1;
};

struct Pipe {
  Fd read_end;
  Fd write_end;
};

// Opens or creates (then with mode 0600, whatever the umask). Throws LocalServerError.
Fd OpenFile(const std::filesystem::path& file, int flags);
Pipe MakePipe();

// Takes a lock (LOCK_SH or LOCK_EX of flock) without waiting. False: somebody holds a conflicting one.
bool TryLock(const Fd& file, int operation);

}  // namespace localdb
