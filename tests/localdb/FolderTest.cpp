// SPDX-License-Identifier: Apache-2.0
#include "localdb/Folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "TemporaryFolder.h"
#include "localdb/LocalServer.h"
#include "localdb/Space.h"

using localdb::Folder;
using localdb::LocalServerError;
using testing::AllOf;
using testing::HasSubstr;

namespace fs = std::filesystem;

namespace {

std::string ErrorOf(const fs::path& path) {
  try {
    Folder(path).Prepare();
    return "";
  } catch (const LocalServerError& error) {
    return error.what();
  }
}

}  // namespace

class LocalFolder : public testing::Test {
 protected:
  fs::path Path(const std::string& name) const { return m_temporary.Path() / name; }
  test_support::TemporaryFolder m_temporary;
};

TEST_F(LocalFolder, IsMadeWithAllFoldersOnTheWay) {
  EXPECT_EQ(ErrorOf(Path("a/b/c")), "");
  EXPECT_TRUE(fs::is_directory(Path("a/b/c")));
  EXPECT_EQ(ErrorOf(Path("a/b/c")), "");
}

TEST_F(LocalFolder, IsOnlyLookedAtWhereThatIsAsked) {
  std::ofstream(Path("file")) << "x";
  fs::create_directory(Path("full"));
  std::ofstream(Path("full") / "letter") << "x";
  const auto looked = [](const fs::path& path) -> std::string {
    try {
      Folder(path).RequireUsable();
    } catch (const LocalServerError& error) {
      return error.what();
    }
    return "";
  };
  EXPECT_EQ(looked(Path("a/b")), "");
  EXPECT_FALSE(fs::exists(Path("a")));
  for (const char* name : {"file", "file/db", "full"}) {
    EXPECT_NE(looked(Path(name)), "") << name;
    EXPECT_EQ(looked(Path(name)), ErrorOf(Path(name))) << name;
  }
}

TEST_F(LocalFolder, ThatMayNotBeMadeIsToldWithItsReason) {
  constexpr uid_t kNobody = 65534;
  chmod(m_temporary.Path().c_str(), 0555);
  const auto try_as_ordinary_user = [this] {
    if (geteuid() == 0 && setuid(kNobody) != 0) _exit(2);
    std::fputs(ErrorOf(Path("db")).c_str(), stderr);
    _exit(1);
  };
  EXPECT_EXIT(try_as_ordinary_user(), testing::ExitedWithCode(1),
              "cannot create the folder .*Permission denied");
  chmod(m_temporary.Path().c_str(), 0700);
}

TEST_F(LocalFolder, ThatIsEmptyIsTakenAndClosedToOthers) {
  fs::create_directory(Path("empty"));
  chmod(Path("empty").c_str(), 0777);
  EXPECT_EQ(ErrorOf(Path("empty")), "");
  EXPECT_EQ(fs::status(Path("empty")).permissions(), fs::perms::owner_all);
}

TEST_F(LocalFolder, WithForeignFilesIsRefusedAndLeftAsItIs) {
  fs::create_directory(Path("full"));
  chmod(Path("full").c_str(), 0755);
  std::ofstream(Path("full/letter.txt")) << "Dear";
  EXPECT_THAT(ErrorOf(Path("full")),
              AllOf(HasSubstr("'" + Path("full").string() + "'"), HasSubstr("it holds 'letter.txt'"),
                    HasSubstr("choose an empty folder")));
  EXPECT_EQ(std::distance(fs::directory_iterator(Path("full")), {}), 1);
  EXPECT_EQ(fs::status(Path("full")).permissions(), static_cast<fs::perms>(0755));
}

TEST_F(LocalFolder, WithTheMarkOfALocalDatabaseIsTaken) {
  fs::create_directory(Path("ours"));
  std::ofstream(Folder(Path("ours")).StartLock());
  std::ofstream(Path("ours/other"));
  EXPECT_EQ(ErrorOf(Path("ours")), "");
}

TEST_F(LocalFolder, CannotBeAFile) {
  std::ofstream(Path("file")) << "text";
  EXPECT_EQ(ErrorOf(Path("file")),
            "'" + Path("file").string() + "' is not a folder; a local database needs one of its own");
}

TEST_F(LocalFolder, CannotLieInAFile) {
  std::ofstream(Path("file")) << "text";
  EXPECT_EQ(ErrorOf(Path("file/db")),
            "cannot create the folder '" + Path("file/db").string() + "': Not a directory");
}

TEST_F(LocalFolder, CannotBeMadeWhereTheSystemForbidsIt) {
  EXPECT_EQ(ErrorOf("/proc/lk-test-folder"),
            "cannot create the folder '/proc/lk-test-folder': No such file or directory");
}

TEST_F(LocalFolder, OfAnotherUserIsRefused) {
  const bool root = geteuid() == 0;
  fs::create_directory(Path("theirs"));
  if (root) {
    ASSERT_EQ(chown(Path("theirs").c_str(), 65534, 65534), 0);
  }
  EXPECT_THAT(ErrorOf(root ? Path("theirs") : fs::path("/etc")),
              HasSubstr(root ? "belongs to nobody, not to root" : "belongs to root, not to"));
}

TEST_F(LocalFolder, NeedsAName) {
  EXPECT_EQ(ErrorOf(""), "the folder of the local database has no name; give a path");
}

TEST_F(LocalFolder, MayHaveAPathThatJustFitsASocket) {
  const std::size_t room = localdb::kSocketPathLimit - std::string("/mariadb.sock").size();
  const std::string longest = "/" + std::string(room - 1, 'x');
  EXPECT_EQ(Folder(longest).Socket().native().size(), 107u);
  try {
    const Folder too_long(longest + "x");
    FAIL() << "accepted";
  } catch (const LocalServerError& error) {
    EXPECT_THAT(error.what(), AllOf(HasSubstr("has 108 bytes"), HasSubstr("may have 107"),
                                    HasSubstr("at most " + std::to_string(room) + " bytes")));
  }
}

TEST_F(LocalFolder, IsNotCreatedWhenItsPathIsTooLong) {
  const fs::path too_long = Path(std::string(120, 'x'));
  EXPECT_THROW(Folder{too_long}, LocalServerError);
  EXPECT_FALSE(fs::exists(too_long));
}

TEST_F(LocalFolder, IsNamedInFullWithoutATrailingSlash) {
  EXPECT_EQ(Folder("/a/b/../c/").Path(), "/a/c");
  EXPECT_EQ(Folder("db").Path(), fs::current_path() / "db");
}

TEST_F(LocalFolder, SaysHowMuchSpaceIsLeftOnlyWhenThatIsTooLittle) {
  EXPECT_EQ(localdb::SpaceProblem(Path(""), 0), "");
  const std::string problem = localdb::SpaceProblem(Path(""), UINTMAX_MAX);
  EXPECT_THAT(problem, AllOf(HasSubstr("the disk of '" + Path("").string() + "' has only "),
                             HasSubstr(" MB of space left: make some")));
}
