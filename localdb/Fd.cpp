// SPDX-License-Identifier: Apache-2.0
#include "localdb/Fd.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "localdb/LocalServer.h"

namespace localdb {

namespace {

Fd AboveStandardOnes(int fd) {
  if (fd > STDERR_FILENO || fd < 0) return Fd(fd);
  const Fd low(fd);
  return Fd(fcntl(fd, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
}

}  // namespace

void Fd::Close() {
  if (m_fd >= 0) close(m_fd);
  m_fd = -1;
}

Fd OpenFile(const std::filesystem::path& file, int flags) {
  Fd opened = AboveStandardOnes(open(file.c_str(), flags | O_CLOEXEC, S_IRUSR | S_IWUSR));
  if (!opened.IsOpen())
    throw LocalServerError("cannot open '" + file.string() + "': " + std::strerror(errno));
  if ((flags & O_CREAT) != 0) fchmod(opened.Get(), S_IRUSR | S_IWUSR);
  return opened;
}

Pipe MakePipe() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0)
    throw LocalServerError(std::string("cannot make a pipe: ") + std::strerror(errno));
  Fd read_end = AboveStandardOnes(ends[0]);
  Fd write_end = AboveStandardOnes(ends[1]);
  return {std::move(read_end), std::move(write_end)};
}

bool TryLock(const Fd& file, int operation) { return flock(file.Get(), operation | LOCK_NB) == 0; }

}  // namespace localdb
