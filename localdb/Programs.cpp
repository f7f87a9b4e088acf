// SPDX-License-Identifier: Apache-2.0
#include "localdb/Programs.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "localdb/LocalServer.h"

namespace localdb {

namespace fs = std::filesystem;

namespace {

constexpr const char* kPackage = "mariadb-server-core";

std::vector<fs::path> Split(std::string_view search_path) {
  std::vector<fs::path> folders;
  while (!search_path.empty()) {
    const std::size_t end = std::min(search_path.find(':'), search_path.size());
    if (end > 0) folders.emplace_back(search_path.substr(0, end));
    search_path.remove_prefix(std::min(end + 1, search_path.size()));
  }
  return folders;
}

bool IsProgram(const fs::path& file) {
  std::error_code unknown;
  return fs::is_regular_file(file, unknown) && access(file.c_str(), X_OK) == 0;
}

std::string Listed(const std::vector<fs::path>& paths) {
  std::string text;
  for (const fs::path& path : paths) text += (text.empty() ? "" : ", ") + path.string();
  return text;
}

}  // namespace

fs::path FindProgram(const std::string& name, std::string_view search_path,
                     const std::vector<fs::path>& others) {
  std::vector<fs::path> folders = Split(search_path);
  for (const fs::path& other : others)
    if (std::find(folders.begin(), folders.end(), other) == folders.end()) folders.push_back(other);
  for (const fs::path& folder : folders)
    if (IsProgram(folder / name)) return fs::absolute(folder / name);
  throw LocalServerError("the program " + name + " was not found in " + Listed(folders) +
                         "; install the package " + kPackage);
}

fs::path FindServer() {
  const char* search_path = std::getenv("PATH");
  return FindProgram("mariadbd", search_path != nullptr ? search_path : "",
                     {"/usr/sbin", "/usr/bin", "/usr/local/sbin", "/usr/local/bin"});
}

fs::path FindScripts(const fs::path& server) {
  const fs::path beside = server.parent_path().parent_path() / "share";
  const std::vector<fs::path> folders{beside / "mysql", beside / "mariadb", "/usr/share/mysql",
                                      "/usr/share/mariadb"};
  std::error_code unknown;
  for (const fs::path& folder : folders)
    if (fs::exists(folder / "mysql_system_tables.sql", unknown)) return folder;
  throw LocalServerError("the script mysql_system_tables.sql was not found in " + Listed(folders) +
                         "; install the package " + kPackage);
}

}  // namespace localdb
