// SPDX-License-Identifier: Apache-2.0
#include "localdb/Programs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>

#include "TemporaryFolder.h"
#include "localdb/LocalServer.h"
#include "localdb/ServerLog.h"

namespace fs = std::filesystem;

namespace {

void WriteProgram(const fs::path& file, mode_t mode) {
  fs::create_directories(file.parent_path());
  std::ofstream(file) << "#!/bin/sh\n";
  chmod(file.c_str(), mode);
}

}  // namespace

class Programs : public testing::Test {
 protected:
  test_support::TemporaryFolder m_temporary;
  fs::path m_first = m_temporary.Path() / "first";
  fs::path m_second = m_temporary.Path() / "second";
};

TEST_F(Programs, AreFoundByTheSearchPathFirst) {
  WriteProgram(m_first / "server", 0755);
  WriteProgram(m_second / "server", 0755);
  EXPECT_EQ(localdb::FindProgram("server", m_second.string() + ":/nowhere", {m_first}), m_second / "server");
}

TEST_F(Programs, AreFoundInTheOtherFoldersWithoutASearchPath) {
  WriteProgram(m_first / "server", 0755);
  EXPECT_EQ(localdb::FindProgram("server", "", {m_second, m_first}), m_first / "server");
}

TEST_F(Programs, ThatCannotBeRunAreNotTaken) {
  WriteProgram(m_first / "server", 0644);
  WriteProgram(m_second / "server", 0755);
  EXPECT_EQ(localdb::FindProgram("server", m_first.string(), {m_second}), m_second / "server");
}

TEST_F(Programs, ThatAreMissingAreToldWithWhereTheyWereLookedForAndTheirPackage) {
  try {
    localdb::FindProgram("mariadbd", "/one::/two", {"/two", "/three"});
    FAIL() << "found";
  } catch (const localdb::LocalServerError& error) {
    EXPECT_STREQ(error.what(),
                 "the program mariadbd was not found in /one, /two, /three; install the package "
                 "mariadb-server-core");
  }
}

TEST_F(Programs, TheServersScriptsAreLookedForBesideItFirst) {
  WriteProgram(m_first / "sbin" / "mariadbd", 0755);
  WriteProgram(m_first / "share" / "mysql" / "mysql_system_tables.sql", 0644);
  EXPECT_EQ(localdb::FindScripts(m_first / "sbin" / "mariadbd"), m_first / "share" / "mysql");
}

TEST(Explanation, AreTheFirstThreeErrorsInOneLine) {
  const test_support::TemporaryFolder folder;
  const fs::path log = folder.Path() / "log";
  std::ofstream(log) << "[ERROR] a\n[ERROR] b\n[Note] c\n[ERROR] d\n[ERROR] e\n[Note] f\n";
  EXPECT_EQ(localdb::Explanation(log), "[ERROR] a | [ERROR] b | [ERROR] d");
}

TEST(Explanation, WithoutErrorsAreTheLastThreeLines) {
  const test_support::TemporaryFolder folder;
  const fs::path log = folder.Path() / "log";
  std::ofstream(log) << "a\nb\n\nc\nd\n";
  EXPECT_EQ(localdb::Explanation(log), "b | c | d");
}

TEST(Explanation, OfAMissingLogAreEmpty) { EXPECT_EQ(localdb::Explanation("/nowhere/log"), "(empty)"); }
