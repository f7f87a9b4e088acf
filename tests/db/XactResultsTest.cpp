// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "core/LKConfig.h"
#include "db/Xact.h"

namespace {

void ExecuteTimed(CXact& xact, long rows, long bytes, int result = 1) {
  xact.GetTimer().SetStartTime();
  xact.GetTimer().SetEndTime(rows, bytes);
  xact.SetExecuteResult(result);
  xact.PostExecute();
}

CXactResults ResultsOf(CXact& xact) {
  CXactResults results;
  EXPECT_EQ(xact.GetXactResults(&results), 1);
  return results;
}

TEST(XactResults, AddUpWhatTheTimerWasGiven) {
  CXact xact;
  ExecuteTimed(xact, 1, 100);
  const __int64 first = xact.GetTimer().GetEnd() - xact.GetTimer().GetStart();
  ExecuteTimed(xact, 2, 50);
  const __int64 second = xact.GetTimer().GetEnd() - xact.GetTimer().GetStart();
  const CXactResults results = ResultsOf(xact);
  EXPECT_EQ(results.m_nExecutions, 2);
  EXPECT_EQ(results.m_nFailures, 0);
  EXPECT_EQ(results.m_nRows, 3);
  EXPECT_EQ(results.m_nBytes, 150);
  EXPECT_EQ(results.m_nTotalTime, first + second);
  EXPECT_EQ(results.m_nTimedExecutions, 2);
  EXPECT_EQ(results.m_nMinTime, std::min(first, second));
  EXPECT_EQ(results.m_nMaxTime, std::max(first, second));
}

TEST(XactResults, CountAFailureOnlyForTheExecutionThatFailed) {
  CXact xact;
  ExecuteTimed(xact, 0, 0, 1);
  ExecuteTimed(xact, 0, 0, 0);
  xact.PostExecute();
  EXPECT_EQ(ResultsOf(xact).m_nExecutions, 3);
  EXPECT_EQ(ResultsOf(xact).m_nFailures, 1);
}

TEST(XactResults, OfAnExecutionWhoseTimerWasResetHaveNoTimeAndNoRows) {
  CXact xact;
  xact.GetTimer().SetStartTime();
  xact.GetTimer().SetEndTime(5, 5);
  xact.GetTimer().Reset();
  xact.PostExecute();
  xact.GetTimer().SetStartTime();
  xact.PostExecute();
  const CXactResults results = ResultsOf(xact);
  EXPECT_EQ(results.m_nExecutions, 2);
  EXPECT_EQ(results.m_nRows, 0);
  EXPECT_EQ(results.m_nTotalTime, 0);
  EXPECT_EQ(results.m_nTimedExecutions, 0);
}

TEST(XactResults, AreNotGivenToANullPointer) {
  CXact xact;
  EXPECT_EQ(xact.GetXactResults(nullptr), 0);
}

TEST(XactResults, GiveARateOfExecutionsPerSecond) {
  CXact xact;
  for (int i = 0; i < 10; ++i) ExecuteTimed(xact, 1, 1);
  EXPECT_EQ(xact.CalculateResults(2000), 1);
  EXPECT_DOUBLE_EQ(ResultsOf(xact).m_fRate, 5.0);
  EXPECT_EQ(xact.CalculateResults(0), 0);
  EXPECT_DOUBLE_EQ(ResultsOf(xact).m_fRate, 5.0);
}

TEST(XactResults, ClearTheirCountsAndTheSpreadOfTheirTimesSeparately) {
  CXact xact;
  ExecuteTimed(xact, 4, 8, 0);
  const __int64 max = ResultsOf(xact).m_nMaxTime;
  xact.ClearResults();
  EXPECT_EQ(ResultsOf(xact).m_nExecutions, 0);
  EXPECT_EQ(ResultsOf(xact).m_nFailures, 0);
  EXPECT_EQ(ResultsOf(xact).m_nRows, 0);
  EXPECT_EQ(ResultsOf(xact).m_nTotalTime, 0);
  EXPECT_EQ(ResultsOf(xact).m_nTimedExecutions, 1);
  EXPECT_EQ(ResultsOf(xact).m_nMaxTime, max);
  xact.ClearDistributions();
  EXPECT_EQ(ResultsOf(xact).m_nTimedExecutions, 0);
  EXPECT_EQ(ResultsOf(xact).m_nMaxTime, 0);
}

TEST(XactResults, StartEmptyForATest) {
  CXact xact;
  ExecuteTimed(xact, 4, 8);
  ASSERT_EQ(xact.InitializeForTest(nullptr, 1, 1, 1), 1);
  EXPECT_EQ(ResultsOf(xact).m_nExecutions, 0);
  EXPECT_EQ(ResultsOf(xact).m_nTimedExecutions, 0);
  EXPECT_FALSE(xact.GetTimer().IsStarted());
}

class ResultsFile : public testing::Test {
 protected:
  ResultsFile()
      : m_folder(std::filesystem::temp_directory_path() / ("xact_results_" + std::to_string(getpid()))) {
    std::filesystem::create_directories(m_folder);
    LKGetConfig()->WriteProfileString(L"Results", L"Directory", m_folder.wstring().c_str());
  }
  ~ResultsFile() override { std::filesystem::remove_all(m_folder); }

  std::vector<std::string> Lines(const std::string& name) const {
    std::ifstream file(m_folder / name);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
  }

  std::filesystem::path m_folder;
};

TEST_F(ResultsFile, HasAHeadAndALineForEachExecution) {
  CXact xact;
  xact.SetXactID(202);
  ASSERT_EQ(xact.OpenResultsFile(3), 1);
  ExecuteTimed(xact, 1, 100);
  const std::string times =
      std::to_string(xact.GetTimer().GetStart()) + ",0," + std::to_string(xact.GetTimer().GetEnd());
  xact.GetTimer().Reset();
  xact.SetExecuteResult(0);
  xact.PostExecute();
  EXPECT_EQ(xact.CloseResultsFile(), 1);
  xact.PostExecute();
  const auto lines = Lines("xact_202_user_3.csv");
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0], "execution,result,start_ns,response_ns,end_ns,rows,bytes");
  EXPECT_EQ(lines[1], "1,1," + times + ",1,100");
  EXPECT_EQ(lines[2], "2,0,0,0,0,0,0");
}

TEST_F(ResultsFile, OpenedAgainStartsAnew) {
  CXact xact;
  ASSERT_EQ(xact.OpenResultsFile(1), 1);
  ExecuteTimed(xact, 1, 1);
  ASSERT_EQ(xact.OpenResultsFile(1), 1);
  EXPECT_EQ(xact.CloseResultsFile(), 1);
  EXPECT_EQ(Lines("xact_0_user_1.csv").size(), 1u);
}

TEST_F(ResultsFile, InAFolderThatIsNotThereCannotBeOpened) {
  LKGetConfig()->WriteProfileString(L"Results", L"Directory", (m_folder / "none").wstring().c_str());
  CXact xact;
  EXPECT_EQ(xact.OpenResultsFile(1), 0);
  EXPECT_EQ(xact.CloseResultsFile(), 0);
}

TEST_F(ResultsFile, ThatDoesNotHoldAllItsLinesSaysSoWhenItIsClosed) {
  std::filesystem::create_symlink("/dev/full", m_folder / "xact_0_user_1.csv");
  CXact xact;
  ASSERT_EQ(xact.OpenResultsFile(1), 1);
  xact.PostExecute();
  EXPECT_EQ(xact.CloseResultsFile(), 0);
}

TEST_F(ResultsFile, ThatWasNeverOpenedCannotBeClosed) {
  CXact xact;
  EXPECT_EQ(xact.CloseResultsFile(), 0);
}

}  // namespace
