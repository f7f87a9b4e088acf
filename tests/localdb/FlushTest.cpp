// SPDX-License-Identifier: Apache-2.0
// What reaches the disk before data count as made. The program's own syncfs stands before the C library's.
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "TemporaryFolder.h"
#include "localdb/LocalServer.h"

namespace fs = std::filesystem;

namespace {

struct Flushed {
  fs::path path;
  bool holds_tables;
  bool has_its_name;  // the one under which it is served
};

std::vector<Flushed>& Flushes() {
  static std::vector<Flushed> flushes;
  return flushes;
}

}  // namespace

extern "C" int syncfs(int fd) noexcept {
  const fs::path path = fs::read_symlink("/proc/self/fd/" + std::to_string(fd));
  Flushes().push_back(
      {path, fs::exists(path / "mysql" / "global_priv.MAD"), fs::exists(path.parent_path() / "data")});
  return static_cast<int>(syscall(SYS_syncfs, fd));
}

namespace {

TEST(NewData, AreOnTheDiskWholeBeforeTheyGetTheirName) {
  const test_support::TemporaryFolder temporary;
  const fs::path db = temporary.Path() / "db";
  Flushes().clear();
  { const localdb::LocalServer server(db); }
  ASSERT_EQ(Flushes().size(), 1u);
  EXPECT_EQ(Flushes().front().path, fs::canonical(db) / "data.new");
  EXPECT_TRUE(Flushes().front().holds_tables);
  EXPECT_FALSE(Flushes().front().has_its_name);
  EXPECT_TRUE(fs::exists(db / "data"));
  { const localdb::LocalServer again(db); }
  EXPECT_EQ(Flushes().size(), 1u) << "data that are there are not made anew";
}

}  // namespace
