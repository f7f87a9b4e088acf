// SPDX-License-Identifier: Apache-2.0
// What a log has to say to somebody who waits for its server.
#pragma once

#include <filesystem>
#include <string>

namespace localdb {

// The last lines that report an error, else the last lines, as one line; "(empty)" when there is nothing.
std::string LastWords(const std::filesystem::path& log);

}  // namespace localdb
