// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/TableBook.h"

#include <gtest/gtest.h>

#include <thread>

#include "lkbench/workload/TableWatch.h"

namespace lkbench {
namespace {

Execution Done(std::uint64_t time) {
  Execution execution;
  execution.done = true;
  execution.rows = 1;
  execution.response = time;
  return execution;
}

TEST(TableWatch, TheTableIsTheOneThatAStatementNames) {
  EXPECT_EQ(TableNumberIn("delete from LK_REP_TABLE12 where id = 3"), 12);
  EXPECT_EQ(TableNumberIn("SELECT LK_REP_ID_SEQ.NEXTVAL FROM DUAL"), 0);
  EXPECT_EQ(TableNumberIn("LK_REP_TABLE"), 0);
}

TEST(TableWatch, AStatementWithoutATableLeavesTheNoteAndTakingItClearsIt) {
  NoteStatement("SELECT * FROM LK_REP_TABLE3");
  NoteStatement("SELECT LK_REP_ID_SEQ.NEXTVAL FROM DUAL");
  EXPECT_EQ(TakeTable(), 3);
  EXPECT_EQ(TakeTable(), 0);
}

TEST(TableWatch, EachThreadHasItsOwnNote) {
  NoteStatement("SELECT * FROM LK_REP_TABLE3");
  std::thread([] { EXPECT_EQ(TakeTable(), 0); }).join();
  EXPECT_EQ(TakeTable(), 3);
}

TEST(TableBook, EveryUsersExecutionsOfATableAreAddedUp) {
  TableBook book(2, 8);
  for (int user = 0; user < 8; ++user) book.Record(user, 2, Done(50));
  book.Record(3, 2, Execution{});
  book.NoteUndone(5, 2, 4);
  const auto totals = book.Totals({0, 5, 6});
  ASSERT_EQ(totals.size(), 1u);
  EXPECT_EQ(totals[0].number, 2);
  EXPECT_EQ(totals[0].name, "LK_REP_TABLE2");
  EXPECT_EQ(totals[0].columns, 6);
  EXPECT_EQ(totals[0].executions, 9u);
  EXPECT_EQ(totals[0].failures, 1u);
  EXPECT_EQ(totals[0].rows, 8u);
  EXPECT_EQ(totals[0].undone, 4u);
  EXPECT_EQ(totals[0].response.Count(), 8u);
  EXPECT_EQ(totals[0].response.Percentile(50), 50u);
}

TEST(TableBook, ATableThatIsNotKnownHasNumberZero) {
  TableBook book(2, 1);
  book.Record(0, 0, Done(1));
  book.Record(0, 7, Done(1));
  const auto totals = book.Totals({});
  ASSERT_EQ(totals.size(), 1u);
  EXPECT_EQ(totals[0].number, 0);
  EXPECT_EQ(totals[0].executions, 2u);
}

TEST(TableBook, PastTheLimitOnlyTheTimesAreLeftOut) {
  TableBook book(TableBook::kMostTimed + 1, 1);
  book.Record(0, 400, Done(1));
  EXPECT_EQ(book.Totals({}).at(0).executions, 1u);
  EXPECT_EQ(book.Totals({}).at(0).response.Count(), 0u);
}

TEST(TableBook, UsersThatWriteToTheSameTableAtTheSameTimeLoseNothing) {
  TableBook book(1, 1);
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&] {
      for (std::uint64_t n = 0; n < 20'000; ++n) book.Record(0, 1, Done(n));
    });
  for (std::thread& thread : threads) thread.join();
  const auto totals = book.Totals({}).at(0);
  EXPECT_EQ(totals.executions, 80'000u);
  EXPECT_EQ(totals.response.Count(), 80'000u);
  EXPECT_EQ(totals.response.Max(), 19'999u);
}

}  // namespace
}  // namespace lkbench
