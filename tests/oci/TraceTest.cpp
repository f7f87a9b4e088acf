// SPDX-License-Identifier: Apache-2.0
// The trace, as a program under OCIMARIADB_TRACE writes it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "Contract.h"
#include "Planted.h"
#include "TemporaryFolder.h"

namespace oci_test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ContainsRegex;
using testing::Each;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

std::string Whole(const std::string& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// The lines without numbers that may look like a planted one by chance: times, thread and process, ports,
// durations.
std::vector<std::string> WithoutChance(std::vector<std::string> lines) {
  const std::regex chance(R"(^\S+ T\d+ |process=\d+|127\.0\.0\.1:\d+|\d+\.\d{3} ms)");
  for (std::string& line : lines) line = std::regex_replace(line, chance, "");
  return lines;
}

std::string Quoted(const std::string& text) { return "'" + text + "'"; }

class Trace : public testing::Test {
 protected:
  // Runs the program under the variable; gives the lines of the trace file.
  std::vector<std::string> Run(const std::string& scenario, const std::string& variable) {
    const Address address = AddressOf(Transport::kTls);
    const std::string command = "OCIMARIADB_TRACE=" + Quoted(variable) + " " TRACE_CLIENT " " + scenario +
                                " " + Quoted(address.connect_string) + " " + Quoted(address.user) + " " +
                                Quoted(address.password) + " 2>" + m_stderr;
    const int status = std::system(command.c_str());
    EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, 0) << Whole(m_stderr);
    return Lines(Whole(m_file));
  }
  std::vector<std::string> ToFile(const std::string& scenario, int bits) {
    return Run(scenario, std::to_string(bits) + ":" + m_file);
  }

  test_support::TemporaryFolder m_folder;
  const std::string m_file = m_folder.Path() / "trace";
  const std::string m_stderr = m_folder.Path() / "stderr";
};

TEST_F(Trace, HoldsNoValueAndNoPassword) {
  const auto lines = WithoutChance(ToFile("values", 63));
  const std::string password = AddressOf(Transport::kTls).password;
  EXPECT_THAT(lines, Each(Not(HasSubstr(password))));
  for (const char* planted : kPlanted) EXPECT_THAT(lines, Each(Not(HasSubstr(planted)))) << planted;
  EXPECT_THAT(lines, Contains(HasSubstr("server 1062: (value left out) for key 'PRIMARY'")));
  EXPECT_THAT(lines,
              Contains(HasSubstr("server 1146: (text left out: it may hold values); in OCIStmtExecute")))
      << "the block did not raise what hides as another error";
}

TEST_F(Trace, TellsAnErrorWithItsNumbersTextAndPlace) {
  EXPECT_THAT(ToFile("values", 2),
              AllOf(Each(ContainsRegex(" error +")),
                    Contains(HasSubstr("ORA-00942: table or view does not exist; server 1146: Table "
                                       "'lkbench.t_nowhere' doesn't exist; in OCIStmtExecute")),
                    Contains(HasSubstr("row 1: ORA-00001: unique constraint (LKBENCH.PK_T_TRACE) violated")),
                    Contains(ContainsRegex("ORA-24381: .*; at ExecuteBound.cpp:[0-9]+; in OCIStmtExecute"))));
}

TEST_F(Trace, TellsACallWithArgumentsStatusAndDuration) {
  const auto lines = ToFile("ping", 1);
  EXPECT_THAT(lines,
              Each(ContainsRegex(" call +OCI[A-Za-z0-9]+\\(.*\\) = OCI_[A-Z_]+ [0-9]+\\.[0-9]{3} ms$")));
  EXPECT_THAT(lines, Contains(ContainsRegex("T[0-9]+ C[0-9]+ call +OCIPing\\(svchp=service#[0-9]+, "
                                            "errhp=error#[0-9]+\\) = OCI_SUCCESS ")));
}

TEST_F(Trace, TellsSqlAsGivenAndAsSent) {
  const auto lines = ToFile("values", 4);
  EXPECT_THAT(lines,
              Contains(ContainsRegex("sql-given +stmt#[0-9]+ INSERT INTO T_TRACE VALUES \\(:ID, :S, :F, "
                                     "TO_DATE\\(:D, 'YYYY-MM-DD'\\)\\)$")));
  EXPECT_THAT(lines,
              Contains(ContainsRegex("sql-sent +INSERT INTO T_TRACE VALUES \\(\\?, \\?, \\?, *\\?\\)$")));
  EXPECT_THAT(lines, Contains(ContainsRegex("sql-sent +SET NAMES utf8mb4")));
  EXPECT_THAT(lines, Contains(ContainsRegex("sql-sent +BEGIN BEGIN EXECUTE IMMEDIATE .*END;\\\\nEXCEPTION")))
      << "a text of several lines stands in one";
}

TEST_F(Trace, TellsConnectionsAndRoundTrips) {
  const auto lines = ToFile("ping", 16);
  EXPECT_THAT(lines, Contains(ContainsRegex("C[0-9]+ connection connected to 127.0.0.1:")));
  EXPECT_THAT(lines, Contains(ContainsRegex("C[0-9]+ connection closed$")));
  const auto pings = std::ranges::count_if(
      lines, [](const auto& line) { return line.find(" roundtrip  ping ") != line.npos; });
  EXPECT_EQ(pings, 100);
}

TEST_F(Trace, TellsSettingsOfTheLibraryAndOfTheSession) {
  EXPECT_THAT(ToFile("ping", 32),
              testing::ElementsAre(HasSubstr("trace=32 interface=19.0 connector="),
                                   AllOf(HasSubstr("user=distant tls="), Not(HasSubstr("tls=off")))));
}

TEST_F(Trace, TellsWhatAProgramForgotToFree) {
  const auto lines = ToFile("forget", 8);
  ASSERT_FALSE(lines.empty());
  EXPECT_THAT(lines, Contains(ContainsRegex("stmt#[0-9]+ alive at the end of the process$")));
  EXPECT_THAT(lines.back(),
              HasSubstr("alive at the end of the process: 6 (1 env, 1 error, 1 server, 1 service, 1 "
                        "session, 1 stmt)"));
}

TEST_F(Trace, TellsWhatAnEnvironmentTookWithIt) {
  const auto lines = ToFile("ping", 8);
  EXPECT_THAT(
      lines,
      Contains(HasSubstr("alive below env#1 as it is freed: 4 (1 error, 1 server, 1 service, 1 session)")));
  EXPECT_THAT(lines, Contains(ContainsRegex("server#[0-9]+ freed with env#1$")));
  EXPECT_THAT(lines.back(), HasSubstr("alive at the end of the process: 0"));
}

// The line of docs/oci_trace.md that reads the leaks of a program that was killed.
TEST_F(Trace, TheDocumentedCommandFindsWhatAKilledProgramHadNotFreed) {
  ToFile("die", 8);
  const auto page = Lines(Whole(TRACE_PAGE));
  const auto command =
      std::ranges::find_if(page, [](const auto& line) { return line.starts_with("    awk "); });
  ASSERT_NE(command, page.end());
  const std::string found = m_folder.Path() / "found";
  const auto start = command->find("TRACE", command->find_last_of('\''));
  ASSERT_NE(start, std::string::npos);
  ASSERT_EQ(std::system((command->substr(0, start) + m_file + " >" + found).c_str()), 0);
  EXPECT_THAT(Lines(Whole(found)),
              AllOf(testing::SizeIs(6), Contains(ContainsRegex("stmt#[0-9]+ allocated below env#1"))));
}

TEST_F(Trace, LinesOfSeveralThreadsStayWhole) {
  const auto lines = ToFile("several", 63);
  static const std::regex kLine(
      R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{6}Z T\d+ C(-|\d+) (call|error|sql-given|sql-sent|handle|connection|roundtrip|setting) +.*)");
  std::set<std::string> threads;
  for (const auto& line : lines) {
    EXPECT_TRUE(std::regex_match(line, kLine)) << line;
    if (line.find("OCIPing") != line.npos) threads.insert(line.substr(28, line.find(' ', 28) - 28));
  }
  EXPECT_EQ(threads.size(), 5u);
}

TEST_F(Trace, GoesToStderrWithoutAFile) {
  Run("ping", "1");
  EXPECT_THAT(Whole(m_stderr), HasSubstr("OCIPing("));
}

TEST_F(Trace, ABadValueGivesOneLineAndNoTrace) {
  for (const std::string bad : {"all", "64", "1,2", "12:", "-1"}) {
    Run("ping", bad);
    EXPECT_THAT(Lines(Whole(m_stderr)),
                testing::ElementsAre(
                    AllOf(HasSubstr("OCIMARIADB_TRACE: \"" + bad + "\" "), HasSubstr("nothing is traced"))));
  }
  Run("ping", "1:/no/such/folder/trace");
  EXPECT_THAT(
      Lines(Whole(m_stderr)),
      testing::ElementsAre(HasSubstr("cannot open /no/such/folder/trace: No such file or directory")));
}

TEST_F(Trace, AFullDiskEndsTheTraceAndNotTheProgram) {
  Run("ping", "63:/dev/full");
  EXPECT_THAT(Lines(Whole(m_stderr)),
              testing::ElementsAre(HasSubstr("cannot write: No space left on device")));
}

TEST_F(Trace, ZeroOrNothingIsNoTrace) {
  for (const char* off : {"0", ""}) {
    Run("ping", off);
    EXPECT_THAT(Whole(m_stderr), IsEmpty());
  }
}

}  // namespace
}  // namespace oci_test
