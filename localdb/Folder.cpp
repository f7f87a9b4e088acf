// SPDX-License-Identifier: Apache-2.0
#include "localdb/Folder.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "localdb/LocalServer.h"

namespace localdb {

namespace fs = std::filesystem;

namespace {

std::string Quoted(const fs::path& path) { return "'" + path.string() + "'"; }

fs::path Normal(const fs::path& path) {
  if (path.empty()) throw LocalServerError("the folder of the local database has no name; give a path");
  fs::path normal = fs::absolute(path).lexically_normal();
  return normal.has_filename() ? normal : normal.parent_path();
}

std::string UserName(uid_t user) {
  const passwd* entry = getpwuid(user);
  return entry != nullptr ? entry->pw_name : std::to_string(user);
}

// Each missing folder on the way is made for the owner alone, whatever the umask.
void MakeFolders(const fs::path& path) {
  std::error_code unknown;
  if (path.has_parent_path() && path != path.root_path() && !fs::exists(path, unknown))
    MakeFolders(path.parent_path());
  if (mkdir(path.c_str(), S_IRWXU) == 0) {
    chmod(path.c_str(), S_IRWXU);
    return;
  }
  const int reason = errno;  // the look below sets its own
  if (reason != EEXIST && !fs::is_directory(path, unknown))
    throw LocalServerError("cannot create the folder " + Quoted(path) + ": " + std::strerror(reason));
}

}  // namespace

Folder::Folder(const fs::path& path) : m_path(Normal(path)) {
  const std::size_t bytes = Socket().native().size();
  if (bytes <= kSocketPathLimit) return;
  throw LocalServerError("the path of the socket " + Quoted(Socket()) + " has " + std::to_string(bytes) +
                         " bytes, a socket's may have " + std::to_string(kSocketPathLimit) +
                         "; choose a folder with a path of at most " +
                         std::to_string(kSocketPathLimit - (bytes - m_path.native().size())) + " bytes");
}

void Folder::Prepare() const {
  MakeFolders(m_path);
  CheckFolder();
  chmod(m_path.c_str(), S_IRWXU);
  if (access(m_path.c_str(), R_OK | W_OK | X_OK) != 0)
    throw LocalServerError("cannot write in the folder " + Quoted(m_path) + ": " + std::strerror(errno));
}

void Folder::RequireUsable() const {
  std::error_code unknown;
  if (fs::exists(m_path, unknown)) return CheckFolder();
  fs::path above = m_path.parent_path();
  while (!fs::exists(above, unknown) && above.has_relative_path()) above = above.parent_path();
  if (access((above / ".").c_str(), W_OK | X_OK) != 0)
    throw LocalServerError("cannot create the folder " + Quoted(m_path) + ": " + std::strerror(errno));
}

void Folder::CheckFolder() const {
  std::error_code unknown;
  if (!fs::is_directory(m_path, unknown))
    throw LocalServerError(Quoted(m_path) + " is not a folder; a local database needs one of its own");
  CheckOwner();
  CheckContent();
}

void Folder::CheckOwner() const {
  struct stat status {};
  if (stat(m_path.c_str(), &status) != 0)
    throw LocalServerError("cannot read the folder " + Quoted(m_path) + ": " + std::strerror(errno));
  if (status.st_uid == geteuid()) return;
  throw LocalServerError("the folder " + Quoted(m_path) + " belongs to " + UserName(status.st_uid) +
                         ", not to " + UserName(geteuid()) + "; choose a folder of your own");
}

void Folder::CheckContent() const {
  std::error_code failure;
  if (fs::exists(StartLock(), failure)) return;
  const fs::directory_iterator first(m_path, failure);
  if (failure) throw LocalServerError("cannot read the folder " + Quoted(m_path) + ": " + failure.message());
  // Somebody may have made it ours between the two looks.
  if (first == fs::directory_iterator() || fs::exists(StartLock(), failure)) return;
  throw LocalServerError("the folder " + Quoted(m_path) + " is no local database: it holds " +
                         Quoted(first->path().filename()) + "; choose an empty folder or a new one");
}

}  // namespace localdb
