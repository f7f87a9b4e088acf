// SPDX-License-Identifier: Apache-2.0
#include "lkbench/display/StreamObjects.h"

#include <gtest/gtest.h>

#include "lkbench/Console.h"
#include "lkbench/workload/RunNotes.h"

namespace lkbench {
namespace {

using namespace std::chrono_literals;

TEST(StreamObjects, ALineIsOneWhateverTheTextHolds) {
  EXPECT_EQ(LineOf(ProblemObject("two\nlines \"quoted\"")),
            R"({"type":"problem","text":"two\nlines \"quoted\""})");
  EXPECT_EQ(LineOf(ProblemObject("no text \xff")), "{\"type\":\"problem\",\"text\":\"no text \ufffd\"}");
}

TEST(StreamObjects, ALoadTellsItsRows) {
  EXPECT_EQ(LineOf(LoadObject({500, 2000, 7, false})),
            R"({"type":"load","rows":500,"of":2000,"elapsed_ns":7,"over":false})");
}

TEST(StreamObjects, AVerbOfTablesTellsThemAndTheRowsWhereItRemovesSome) {
  EXPECT_EQ(
      LineOf(TablesObject({.verb = "drop", .tables = 1, .of = 2, .rows = {}, .elapsed = 7, .is_over = true})),
      R"({"type":"tables","verb":"drop","tables":1,"of":2,"elapsed_ns":7,"over":true})");
  EXPECT_EQ(
      LineOf(TablesObject({.verb = "refresh", .of = 2, .rows = 9})),
      R"({"type":"tables","verb":"refresh","tables":0,"of":2,"rows_removed":9,"elapsed_ns":0,"over":false})");
}

TEST(StreamObjects, AnErrorHasItsClassNumberAndCount) {
  EXPECT_EQ(
      LineOf(ErrorObject({ErrorClass::kDeadlock, 60, 2, 10, 20, "deadlock detected"})),
      R"({"type":"error","class":"deadlock","code":60,"count":2,"first_ns":10,"last_ns":20,"text":"deadlock detected"})");
}

TEST(StreamObjects, APhaseLeavesOutWhatIsLong) {
  PhaseRecord phase;
  phase.measured.total.response.Record(1000);
  phase.measured.tables.emplace_back();
  const Json object = PhaseObject(phase);
  EXPECT_EQ(object.at("measured").at("total").at("response_ns").at("sum"), 1000);
  EXPECT_FALSE(object.at("measured").at("total").at("response_ns").contains("buckets"));
  EXPECT_FALSE(object.at("measured").contains("tables"));
  EXPECT_FALSE(object.contains("user_executions"));
}

TEST(RunNotes, NewsAreTakenOnce) {
  RunNotes notes;
  const TimePoint now = TimePoint{} + 5ns;
  notes.NoteFailure(now, ErrorClass::kDeadlock, 60, "first");
  notes.NoteFailure(now, ErrorClass::kDeadlock, 60, "again");
  notes.NoteEvent(EventKind::kPhase, now, now, 0, "one");
  const RunNotes::News first = notes.TakeNews();
  ASSERT_EQ(first.errors.size(), 1u);
  EXPECT_EQ(first.errors[0].count, 2u);
  ASSERT_EQ(first.events.size(), 1u);
  EXPECT_EQ(first.events[0].text, "one");
  notes.NoteFailure(now, ErrorClass::kDeadlock, 60, "again");
  notes.NoteFailure(now, ErrorClass::kNoSpace, 1653, "full");
  notes.NoteEvent(EventKind::kPhase, now, now, 0, "two");
  const RunNotes::News second = notes.TakeNews();
  ASSERT_EQ(second.errors.size(), 1u);
  EXPECT_EQ(second.errors[0].code, 1653);
  ASSERT_EQ(second.events.size(), 1u);
  EXPECT_EQ(second.events[0].text, "two");
  EXPECT_TRUE(notes.TakeNews().events.empty());
}

}  // namespace
}  // namespace lkbench
