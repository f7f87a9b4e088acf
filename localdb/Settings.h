// SPDX-License-Identifier: Apache-2.0
// What a private server is started with. A value; docs/local-database.md has the reason for each default.
#pragma once

#include <cstdint>

namespace localdb {

inline constexpr std::uint64_t kMebibyte = std::uint64_t{1024} * 1024;

enum class Durability {
  kDurable,  // an acknowledged commit survives a crash of the machine
  kRelaxed   // it survives the end of the server; a crash of the machine may take the last second
};

struct Settings {
  Durability durability = Durability::kDurable;
  std::uint64_t buffer_pool = 1024 * kMebibyte;  // bytes, whole mebibytes
  std::uint64_t log_size = 256 * kMebibyte;      // bytes, whole mebibytes

  bool operator==(const Settings&) const = default;
};

}  // namespace localdb
