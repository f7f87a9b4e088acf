// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/ResultsFolder.h"

#include <gtest/gtest.h>

#include <fstream>

#include "TemporaryFolder.h"
#include "lkbench/page/PageParts.h"
#include "lkbench/results/Page.h"

using namespace lkbench;
using test_support::TemporaryFolder;
namespace fs = std::filesystem;

namespace {

const auto kStart = std::chrono::system_clock::from_time_t(1767323045);

class ResultsFolderTest : public testing::Test {
 protected:
  ResultsFolderTest() : m_before(fs::current_path()) { fs::current_path(m_folder.Path()); }
  ~ResultsFolderTest() override { fs::current_path(m_before); }

  TemporaryFolder m_folder;
  fs::path m_before;
};

std::string Refusal(const std::string& asked) {
  try {
    const ResultsFolder folder(asked, "run", kStart);
  } catch (const UsageError& error) {
    return error.what();
  }
  return {};
}

}  // namespace

TEST_F(ResultsFolderTest, IsNamedByTheStartAndTheVerb) {
  EXPECT_EQ(ResultsFolder("", "run", kStart).Path(), "lkbench-results/2026-01-02T03-04-05Z-run");
  EXPECT_EQ(ResultsFolder("", "run", kStart).Path(), "lkbench-results/2026-01-02T03-04-05Z-run-2");
  EXPECT_TRUE(fs::is_directory("lkbench-results/2026-01-02T03-04-05Z-run-2"));
}

TEST_F(ResultsFolderTest, IsTheOneThatWasAskedForWithTheFoldersAboveIt) {
  const ResultsFolder folder("a/b", "run", kStart);
  folder.Write("x.txt", "text");
  folder.Write("c/y.txt", "more");
  EXPECT_EQ(ReadWhole("a/b/x.txt"), "text");
  EXPECT_EQ(ReadWhole("a/b/c/y.txt"), "more");
}

TEST_F(ResultsFolderTest, IsNotSharedWithFilesThatAreThere) {
  fs::create_directory("old");
  std::ofstream("old/run.json") << "{}";
  EXPECT_EQ(Refusal("old"), "results: old holds files already: name a new or an empty folder");
  EXPECT_EQ(ReadWhole("old/run.json"), "{}");
}

TEST_F(ResultsFolderTest, UnderAFileIsRefused) {
  std::ofstream("file") << "x";
  EXPECT_EQ(Refusal("file/a"), "results: file/a cannot be made: Not a directory");
}

TEST_F(ResultsFolderTest, ALookAtThePlaceRefusesWhatMakingItWouldAndMakesNothing) {
  fs::create_directory("old");
  fs::create_directory("empty");
  std::ofstream("old/run.json") << "{}";
  for (const char* place : {"old", "old/run.json", "old/run.json/a", "empty", "new/a"}) {
    std::string looked;
    try {
      RequireResultsPlace(place);
    } catch (const UsageError& error) {
      looked = error.what();
    }
    EXPECT_FALSE(fs::exists("new")) << place;
    EXPECT_EQ(looked, Refusal(place)) << place;
  }
  EXPECT_NO_THROW(RequireResultsPlace(""));
  std::ofstream("lkbench-results") << "a file";
  EXPECT_THROW(RequireResultsPlace(""), UsageError);
}

TEST_F(ResultsFolderTest, AFileThatCannotBeWrittenIsKnownByALook) {
  std::ofstream("there") << "x";
  EXPECT_EQ(WhyNotWritable("new"), "");
  EXPECT_EQ(WhyNotWritable("there"), "");
  EXPECT_EQ(WhyNotWritable("."), "Is a directory");
  EXPECT_EQ(WhyNotWritable("there/a"), "Not a directory");
  EXPECT_EQ(WhyNotWritable("nowhere/a"), "No such file or directory");
  EXPECT_FALSE(fs::exists("new"));
}

TEST_F(ResultsFolderTest, LeavesTheOldFileWhereTheNewOneCannotBeWritten) {
  std::ofstream("kept") << "old";
  fs::create_directory("kept.part");
  EXPECT_THROW(WriteWhole("kept", "new"), ResultsError);
  EXPECT_EQ(ReadWhole("kept"), "old");
}

TEST_F(ResultsFolderTest, HoldsNoTemporaryFileAfterAWrite) {
  WriteWhole("one", "1");
  WriteWhole("one", "2");
  EXPECT_EQ(ReadWhole("one"), "2");
  EXPECT_FALSE(fs::exists("one.part"));
}

TEST(Page, CarriesItsDataSoThatNoTextEndsTheElement) {
  EXPECT_EQ(JsonInPage(R"({"a":"</script><!--"})"), R"({"a":"\u003c/script>\u003c!--"})");
}

TEST(Page, HasNoHoleLeftAndKeepsWhatTheDataHolds) {
  const std::string page = RunPage(R"({"a":"@@SCRIPT@@"})");
  EXPECT_NE(page.find(R"({"a":"@@SCRIPT@@"})"), page.npos);
  EXPECT_EQ(page.find("@@STYLE@@"), page.npos);
  EXPECT_EQ(page.find("@@CHARTS@@"), page.npos);
  EXPECT_NE(page.find("reportPage(JSON.parse"), page.npos);
}

TEST(Page, IsOfPartsThatEndNoElement) {
  EXPECT_EQ(PageCharts().find("</script"), std::string_view::npos);
  EXPECT_EQ(PageScript().find("</script"), std::string_view::npos);
  EXPECT_EQ(PageStyle().find("</style"), std::string_view::npos);
}
