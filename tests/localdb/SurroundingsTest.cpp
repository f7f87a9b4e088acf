// SPDX-License-Identifier: Apache-2.0
// Processes with an unusual environment, and everything that can be in the way of a server.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>

#include "Processes.h"
#include "SqlClient.h"
#include "TemporaryFolder.h"
#include "localdb/LocalServer.h"

using localdb::LocalServer;
using localdb::Options;
using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

namespace fs = std::filesystem;

namespace {

constexpr uid_t kNobody = 65534;

// Tests run as root (as in a container) or as an ordinary user; both are to try what an ordinary user meets.
void GiveToOrdinaryUser(const fs::path& folder) {
  if (geteuid() == 0 && chown(folder.c_str(), kNobody, kNobody) != 0)
    throw std::runtime_error("chown failed");
}

void BecomeOrdinaryUser() {
  if (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0))
    throw std::runtime_error("cannot become an ordinary user");
}

}  // namespace

class LocalServerSurroundings : public testing::Test {
 protected:
  fs::path Db() const { return m_temporary.Path() / "db"; }
  static Options Impatient() {
    Options options;
    options.patience = std::chrono::seconds(1);
    return options;
  }
  test_support::TemporaryFolder m_temporary;
};

TEST_F(LocalServerSurroundings, WorksWithClosedStandardDescriptorsAndLeavesThemFree) {
  UserProcess user(Db(), [] {
    for (const int fd : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) close(fd);
  });
  EXPECT_TRUE(user.Started());
  const std::string descriptors = "/proc/" + std::to_string(user.Pid()) + "/fd/";
  for (const char* standard : {"0", "1", "2"})
    EXPECT_FALSE(fs::is_symlink(descriptors + standard)) << standard;
}

TEST_F(LocalServerSurroundings, WorksForAnOrdinaryUserWithAnUmaskThatForbidsAll) {
  GiveToOrdinaryUser(m_temporary.Path());
  const fs::path folder = m_temporary.Path() / "on the way" / "db";
  UserProcess user(folder, [] {
    BecomeOrdinaryUser();
    umask(0777);
  });
  EXPECT_TRUE(user.Started());
  EXPECT_EQ(fs::status(folder).permissions(), fs::perms::owner_all);
}

TEST_F(LocalServerSurroundings, AnUmaskThatForbidsNothingOpensNothing) {
  UserProcess user(Db(), [] { umask(0); });
  EXPECT_TRUE(user.Started());
  for (const fs::directory_entry& entry : fs::directory_iterator(Db())) {
    if (entry.is_socket()) continue;  // in a closed folder
    EXPECT_EQ(entry.status().permissions() & (fs::perms::group_all | fs::perms::others_all), fs::perms::none)
        << entry.path();
  }
}

TEST_F(LocalServerSurroundings, TakesNothingFromTheEnvironmentButThePath) {
  UserProcess user(Db(), [] {
    unsetenv("HOME");
    unsetenv("PATH");
    setenv("TMPDIR", "/nowhere", 1);
    setenv("NOTIFY_SOCKET", "/nowhere/notify", 1);
    setenv("MYSQL_UNIX_PORT", "/nowhere/socket", 1);
  });
  EXPECT_THAT(ReadFile("/proc/" + std::to_string(user.ServerPid()) + "/environ"), Not(HasSubstr("/nowhere")));
}

TEST_F(LocalServerSurroundings, ARelativeFolderStaysTheSameWhenTheProcessMoves) {
  const fs::path before = fs::current_path();
  fs::current_path(m_temporary.Path());
  const LocalServer server("db/");
  fs::current_path(before);
  EXPECT_EQ(server.Folder(), Db());
  EXPECT_EQ(SqlClient(server).Value("SELECT 1"), "1");
}

TEST_F(LocalServerSurroundings, AFolderWithOddCharactersIsAFolder) {
  const LocalServer server(m_temporary.Path() / "it's a \"$(db)\" ; é");
  EXPECT_EQ(SqlClient(server).Value("SELECT 1"), "1");
}

TEST_F(LocalServerSurroundings, AServerThatDoesNotStartIsToldWithItsLogAndHarmsNothing) {
  Options options;
  options.server_arguments = {"--no-such-option"};
  const std::string error = ErrorOf(Db(), options);
  EXPECT_THAT(error, AllOf(HasSubstr(Db().string()), HasSubstr("while it started"),
                           HasSubstr("unknown option '--no-such-option'"), Not(HasSubstr("\n"))));
  EXPECT_EQ(ErrorOf(Db()), "");
}

TEST_F(LocalServerSurroundings, DamagedDataAreToldWithTheLog) {
  { const LocalServer server(Db()); }
  fs::resize_file(Db() / "data" / "ibdata1", 1000);
  EXPECT_THAT(ErrorOf(Db()), AllOf(HasSubstr("ended with code"), HasSubstr("[ERROR]"), Not(HasSubstr("\n"))));
}

TEST_F(LocalServerSurroundings, AHeldFolderIsToldWithItsHolder) {
  { const LocalServer server(Db()); }
  const int lock = open((Db() / "localdb.lock").c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(lock, LOCK_EX), 0);
  EXPECT_THAT(ErrorOf(Db(), Impatient()),
              AllOf(HasSubstr("is held by " + std::string(program_invocation_short_name) + " (process " +
                              std::to_string(getpid()) + ")"),
                    HasSubstr("within 1 s")));
  close(lock);
}

TEST_F(LocalServerSurroundings, AServerThatDoesNotEndIsTold) {
  { const LocalServer server(Db()); }
  const int lock = open((Db() / "users.lock").c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(lock, LOCK_EX), 0);
  EXPECT_THAT(ErrorOf(Db(), Impatient()), HasSubstr("is being stopped and did not end within 1 s"));
  close(lock);
}

TEST_F(LocalServerSurroundings, AServerThatDoesNotAnswerIsToldWithItsStarter) {
  UserProcess user(Db());
  kill(user.ServerPid(), SIGSTOP);
  EXPECT_THAT(ErrorOf(Db(), Impatient()),
              AllOf(HasSubstr("cannot be joined"), HasSubstr("(process " + std::to_string(user.Pid()) + ")"),
                    HasSubstr("does not answer")));
  kill(user.ServerPid(), SIGCONT);
}

TEST_F(LocalServerSurroundings, DataThatCannotBeMadeAreToldWithTheReason) {
  { const LocalServer server(Db()); }
  fs::remove_all(Db() / "data");
  std::ofstream(Db() / "data.new") << "in the way, and removed";
  EXPECT_EQ(ErrorOf(Db()), "");
}
