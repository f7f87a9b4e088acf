// SPDX-License-Identifier: Apache-2.0
// What the log of a server that did not start has to say about it.
#pragma once

#include <filesystem>
#include <string>

namespace localdb {

// The first lines that report an error (what follows them follows from them), else the last lines, as one
// line; "(empty)" when there is nothing.
std::string Explanation(const std::filesystem::path& log);

}  // namespace localdb
