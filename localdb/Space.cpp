// SPDX-License-Identifier: Apache-2.0
#include "localdb/Space.h"

namespace localdb {

std::string SpaceProblem(const std::filesystem::path& folder, std::uintmax_t needed) {
  std::error_code unknown;
  const std::filesystem::space_info space = std::filesystem::space(folder, unknown);
  if (unknown || space.available >= needed) return {};
  return "the disk of '" + folder.string() + "' has only " + std::to_string(space.available / kMegabyte) +
         " MB of space left: make some, then run lkbench again";
}

}  // namespace localdb
