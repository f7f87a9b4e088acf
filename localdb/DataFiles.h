// SPDX-License-Identifier: Apache-2.0
// The data files of a new server.
#pragma once

#include "localdb/Deadline.h"
#include "localdb/Fd.h"
#include "localdb/Folder.h"
#include "localdb/Settings.h"

namespace localdb {

inline constexpr const char* kSchema = "lkbench";   // made with the data files
inline constexpr const char* kAccount = "lkbench";  // logs in by the socket, without a password

// Makes the data beside its place and renames it when it is whole and on the disk, so that a process killed
// at any moment leaves either good data or something that the next attempt clears away. The program that
// makes it dies with this thread and holds the start lock while it lives. Throws LocalServerError.
void CreateData(const Folder& folder, const Settings& settings, const Fd& start_lock,
                const Deadline& deadline);

}  // namespace localdb
