// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Report.h"

#include <gmock/gmock.h>

#include "lkbench/workload/UserStats.h"

namespace lkbench {
namespace {

using testing::HasSubstr;

Execution Done(std::uint64_t time, std::uint64_t database) {
  Execution execution;
  execution.done = execution.has_database = true;
  execution.rows = 1;
  execution.service = execution.response = time;
  execution.database = database;
  return execution;
}

RunRecord TwoTransactions() {
  RunRecord record;
  Part& result = record.measured;
  result.elapsed = 2'000'000'000;
  record.users = 2;
  result.total.name = "total";
  for (const char* name : {"Insert", "Delete"}) {
    XactStats stats;
    stats.Record(Done(4'000'000, 1'000'000));
    stats.Record(Execution{});
    XactTotals totals;
    totals.name = name;
    stats.AddTo(totals);
    result.total.Add(totals);
    result.xacts.push_back(totals);
  }
  return record;
}

TEST(Report, TheTableHasCountsRatesAndTimesOfEachTransactionAndTheTotal) {
  const std::string table = WorkloadTable(TwoTransactions());
  EXPECT_THAT(table, HasSubstr("transaction (times in ms)  executions  failures  rows  per s   mean    p50   "
                               " p95    p99    max\n"));
  EXPECT_THAT(table, HasSubstr("Insert                              2         1     1    0.5  4.000  4.000  "
                               "4.000  4.000  4.000\n"));
  EXPECT_THAT(table, HasSubstr("total                               4         2     2    1.0  4.000"));
  EXPECT_THAT(table, HasSubstr("  database part                                               1.000"));
}

TEST(Report, WhereTheTableIsTooWideTheTimesStandBelowTheCounts) {
  EXPECT_EQ(WorkloadTable(TwoTransactions(), 95), WorkloadTable(TwoTransactions()));
  const std::string tables = WorkloadTable(TwoTransactions(), 94);
  EXPECT_THAT(tables, HasSubstr("transaction  executions  failures  rows  per s\n"
                                "Insert                2         1     1    0.5\n"));
  EXPECT_THAT(tables, HasSubstr("\n\ntimes in ms       mean    p50    p95    p99    max\n"
                                "Insert           4.000  4.000  4.000  4.000  4.000\n"
                                "  database part  1.000  1.000  1.000  1.000  1.000\n"));
}

TEST(Report, OnlyProblemsThatCameAgainAreRepeatedAtTheEnd) {
  EXPECT_EQ(ProblemTable({{ERROR_LEVEL, "1", "once", 1}, {ERROR_LEVEL, "942", "again", 1500}}),
            "1,500 times: again");
  EXPECT_EQ(ProblemTable({}), "");
}

TEST(Report, FewExecutionsAndLostUsersRaiseDoubts) {
  RunRecord result = TwoTransactions();
  result.lost_users = 1;
  const std::vector<std::string> doubts = Doubts(result, 2);
  EXPECT_THAT(doubts, testing::Contains(HasSubstr("1 user of 2 lost the session")));
  EXPECT_THAT(doubts, testing::Contains(
                          HasSubstr("p99 of fewer than 100 executions is their maximum: Insert, Delete")));
}

TEST(Report, AClientThatKeepsTheMachineBusyRaisesADoubt) {
  RunRecord result = TwoTransactions();
  result.measured.processor = 3'200'000'000;
  EXPECT_THAT(Doubts(result, 2), testing::Not(testing::Contains(HasSubstr("processors busy"))));
  result.measured.processor = 3'300'000'000;
  EXPECT_THAT(Doubts(result, 2),
              testing::Contains(HasSubstr("lkbench itself kept 1.65 of 2 processors busy")));
}

TEST(Report, TheProcessorTimeIsToldPerExecution) {
  RunRecord result = TwoTransactions();
  result.measured.processor = 500'000;
  EXPECT_EQ(ProcessorLine(result.measured), "lkbench itself: 0.00 processors, 125.0 us an execution");
  EXPECT_EQ(ProcessorLine(Part{}), "lkbench itself: 0.00 processors");
}

TEST(ErrorLog, EqualProblemsAreOneLineWithACount) {
  Console console;
  ErrorLog log(console);
  for (int i = 0; i < 1000; ++i) log.Report(ERROR_LEVEL, "1", "unique constraint violated");
  log.Report(WARNING_LEVEL, "1", "unique constraint violated");
  ASSERT_EQ(log.Lines().size(), 2u);
  EXPECT_EQ(log.Lines()[0].count, 1000u);
  EXPECT_EQ(log.Problems(), 1001u);
}

TEST(ErrorLog, InformationIsNoProblem) {
  Console console;
  console.SetLevel(LogLevel::kWarning);
  ErrorLog log(console);
  log.Report(INFO_LEVEL, "0", "Started loading table T.");
  EXPECT_EQ(log.Problems(), 0u);
}

TEST(ErrorLog, ManyDifferentProblemsShareTheLastLine) {
  Console console;
  ErrorLog log(console);
  testing::internal::CaptureStderr();
  for (size_t i = 0; i < ErrorLog::kMostLines + 500; ++i)
    log.Report(ERROR_LEVEL, "1", "problem " + std::to_string(i));
  testing::internal::GetCapturedStderr();
  ASSERT_EQ(log.Lines().size(), ErrorLog::kMostLines);
  EXPECT_EQ(log.Lines().back().text, "other problems");
  EXPECT_EQ(log.Lines().back().count, 501u);
}

TEST(ErrorLog, WhatAUserReportsWhileCaughtIsKeptBack) {
  Console console;
  ErrorLog log(console);
  UserErrors errors(log, "local:db");
  {
    const UserErrors::Catch caught(errors);
    errors.HandleErrorMsg(L"first", 0);
    errors.HandleWarningMsg(L"second", 0);
    EXPECT_EQ(caught.Text(), "first; second");
  }
  EXPECT_EQ(log.Problems(), 0u);
  testing::internal::CaptureStderr();
  errors.HandleErrorMsg(L"third", 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "lkbench: error: third\n");
}

int ReportError(UserErrors& errors, const wchar_t* number, const wchar_t* text) {
  CError error;
  error.m_eErrorLevel = ERROR_LEVEL;
  error.m_szErrorNumber = number;
  error.m_szErrorMessage = text;
  return errors.HandleError(&error);
}

TEST(ErrorLog, LostSessionsAreOneLineThatNamesTheTargetAndCountsThem) {
  Console console;
  ErrorLog log(console);
  UserErrors first(log, "local:db");
  UserErrors second(log, "local:db");
  testing::internal::CaptureStderr();
  ReportError(first, L"3113", L"Cannot commit (commit failed)\nORA-03113: end of file");
  ReportError(second, L"1089", L"ORA-01089: shutdown in progress");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "lkbench: error: the session with local:db is lost: ORA-03113: end of file\n");
  ASSERT_EQ(log.Lines().size(), 1u);
  EXPECT_EQ(log.Lines()[0].count, 2u);
}

TEST(ErrorLog, WhatFollowsFromALostSessionIsNotReported) {
  Console console;
  ErrorLog log(console);
  UserErrors errors(log, "local:db");
  testing::internal::CaptureStderr();
  ReportError(errors, L"3113", L"Unable Describe table while Initialize!\nORA-03113: end of file");
  ReportError(errors, L"-1", L"Unable to retrieve table information");
  ReportError(errors, L"3114", L"ORA-03114: not connected");
  testing::internal::GetCapturedStderr();
  EXPECT_EQ(log.Problems(), 1u);
}

}  // namespace
}  // namespace lkbench
