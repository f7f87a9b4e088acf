// SPDX-License-Identifier: Apache-2.0
// StartLock lets one user at a time create, start, join or leave a local database, across processes. It is
// released when the object ends or its process dies.
#pragma once

#include <string>

#include "localdb/Deadline.h"
#include "localdb/Fd.h"
#include "localdb/Folder.h"

namespace localdb {

class StartLock {
 public:
  // Waits for its turn. Throws LocalServerError that says who holds the folder.
  StartLock(const Folder& folder, const Deadline& deadline);
  const Fd& File() const { return m_file; }

 private:
  Fd m_file;
};

// Marks an open lock file with this process, for the messages of others; and reads such a mark.
void SignAs(const Fd& file, const std::string& role);
std::string ReadSigner(const std::filesystem::path& file);

}  // namespace localdb
