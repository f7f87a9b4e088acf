// SPDX-License-Identifier: Apache-2.0
// Where the server's program and its table definitions lie on this machine.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace localdb {

// Looks in the folders of a PATH-like text first, then in the others. Throws LocalServerError that says where
// it looked and which package has the program.
std::filesystem::path FindProgram(const std::string& name, std::string_view search_path,
                                  const std::vector<std::filesystem::path>& others);

// The server program: by PATH, then where Debian and local builds put it.
std::filesystem::path FindServer();

// The folder with the SQL scripts that make the system tables, beside the server or in the system's place.
std::filesystem::path FindScripts(const std::filesystem::path& server);

}  // namespace localdb
