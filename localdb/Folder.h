// SPDX-License-Identifier: Apache-2.0
// Folder knows the files of a local database and decides whether a path may hold one. Three lock files order
// its users (flock; all end with their holder):
//   localdb.lock  one at a time creates, starts, joins or leaves; it also marks the folder as ours
//   users.lock    shared by every user; the keeper takes it alone and thereby knows that the last one is gone
//   server.lock   held from the start of the keeper until keeper and server are both gone
#pragma once

#include <filesystem>

namespace localdb {

inline constexpr std::size_t kSocketPathLimit =
    107;  // bytes of sockaddr_un::sun_path without the closing zero

class Folder {
 public:
  explicit Folder(const std::filesystem::path& path);  // throws LocalServerError when the path cannot be used

  // Creates the folder when there is none and sees to it that only its owner may enter. Throws
  // LocalServerError when it cannot be made or written, belongs to somebody else or holds foreign files.
  void Prepare() const;
  // Throws what Prepare would throw, as far as that can be told by looking. Makes and changes nothing.
  void RequireUsable() const;

  const std::filesystem::path& Path() const { return m_path; }
  std::filesystem::path Data() const { return m_path / "data"; }
  std::filesystem::path NewData() const { return m_path / "data.new"; }
  std::filesystem::path Temporary() const { return m_path / "tmp"; }
  std::filesystem::path Socket() const { return m_path / "mariadb.sock"; }
  std::filesystem::path Log() const { return m_path / "server.log"; }
  std::filesystem::path OldLog() const { return m_path / "server.log.old"; }
  std::filesystem::path PidFile() const { return m_path / "server.pid"; }
  std::filesystem::path CreateScript() const { return m_path / "create.sql"; }
  std::filesystem::path CreateLog() const { return m_path / "create.log"; }
  std::filesystem::path StartLock() const { return m_path / "localdb.lock"; }
  std::filesystem::path UsersLock() const { return m_path / "users.lock"; }
  std::filesystem::path ServerLock() const { return m_path / "server.lock"; }

 private:
  void CheckFolder() const;
  void CheckOwner() const;
  void CheckContent() const;

  std::filesystem::path m_path;
};

}  // namespace localdb
