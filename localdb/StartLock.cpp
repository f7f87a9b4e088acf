// SPDX-License-Identifier: Apache-2.0
#include "localdb/StartLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>

#include "localdb/LocalServer.h"

namespace localdb {

StartLock::StartLock(const Folder& folder, const Deadline& deadline)
    : m_file(OpenFile(folder.StartLock(), O_RDWR | O_CREAT)) {
  if (!deadline.WaitFor([&] { return TryLock(m_file, LOCK_EX); }))
    throw LocalServerError("the local database '" + folder.Path().string() + "' is held by " +
                           ReadSigner(folder.StartLock()) + ", which did not release it within " +
                           deadline.Text());
  SignAs(m_file, program_invocation_short_name);
}

void SignAs(const Fd& file, const std::string& role) {
  const std::string signature = role + " (process " + std::to_string(getpid()) + ")\n";
  [[maybe_unused]] const bool written =
      ftruncate(file.Get(), 0) == 0 && pwrite(file.Get(), signature.data(), signature.size(), 0) > 0;
}

std::string ReadSigner(const std::filesystem::path& file) {
  std::string signer;
  std::getline(std::ifstream(file), signer);
  return signer.empty() ? "another process" : signer;
}

}  // namespace localdb
