// SPDX-License-Identifier: Apache-2.0
// Whether a full disk is what a server suffers from: its own messages seldom say so.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace localdb {

inline constexpr std::uintmax_t kMegabyte = std::uintmax_t{1024} * 1024;
inline constexpr std::uintmax_t kSpaceToCreate = 64 * kMegabyte;  // what new data take beside the log, about
inline constexpr std::uintmax_t kSpaceToRun = 32 * kMegabyte;     // what files grow by at a time, about

// Says how little is left when less than `needed` is; empty otherwise.
std::string SpaceProblem(const std::filesystem::path& folder, std::uintmax_t needed);

}  // namespace localdb
