// SPDX-License-Identifier: Apache-2.0
// A RunRecord is everything that a workload measured: the one value that reports, files and comparisons are
// made from. It is plain data, filled by the workload, complete after its end (an interrupted one included),
// readable by anybody who holds it.
//
// Times are whole nanoseconds; an offset counts from the common start of the users. Sums agree exactly, at
// every moment: in each Part the total is the sum of the transactions and equals the sum of the tables; each
// failure is in one error class; the warm-up Part (and likewise the measured Part) of a phase is the sum of
// the phase's intervals with that flag; `measured` is the sum of the phases' measured Parts.
//
// Three times are kept of each execution that succeeded. Service time runs from its actual start to its end,
// its commit included when it made one. Response time runs from its intended start: with a rate that is the
// moment that the schedule had for it, so the wait for a free user is in it; without a rate both are the
// same. Database time is what the transaction itself took around its database call.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lkbench/workload/IntervalSeries.h"
#include "lkbench/workload/Phase.h"

namespace lkbench {

// One transaction of the mix, or all of them together.
struct XactTotals : Tally {
  std::string name;
  std::string class_name;  // empty of a total, likewise id 0
  int id = 0;
  HistogramData response;
  HistogramData service;
  HistogramData database;

  void Add(const XactTotals& other);  // the numbers; names stay
};

// One replication table. Its times are left out in a run over more than 512 tables. What cannot be told (no
// statement named a table before it failed) has number 0.
struct TableTotals : Tally {
  int number = 0;
  std::string name;  // "(unknown)" of number 0
  int columns = 0;   // beside ID; 0: unknown
  HistogramData response;

  void Add(const TableTotals& other);
};

struct Part {
  std::uint64_t elapsed = 0;
  std::uint64_t processor =
      0;  // time that all threads of this process computed meanwhile, system calls included
  XactTotals total;
  std::vector<XactTotals> xacts;    // the same transactions in the same order in every Part of a run
  std::vector<TableTotals> tables;  // those that were used, by number; none of a warm-up

  void Add(const Part& other);
};

// The tables of a Part gathered by their number of columns; `name` says "7 columns".
std::vector<TableTotals> ByColumnCount(const std::vector<TableTotals>& tables);

struct PhaseRecord {
  Phase settings;
  std::uint64_t begin = 0;        // offsets
  std::uint64_t warm_up_end = 0;  // = begin without a warm-up
  std::uint64_t end = 0;          // of the user that ended last
  Part warm_up;
  Part measured;
  std::vector<std::uint64_t> user_executions;  // measured ones of user 1, 2 and so on: fairness
  std::uint64_t most_backlog = 0;              // of the measured intervals
  std::uint64_t forgotten = 0;                 // backlog that was dropped when the warm-up ended
};

// All failures of one error number, warm-up included.
struct ErrorRecord {
  ErrorClass error_class = ErrorClass::kOther;
  long code = 0;  // the database's number; 0: none
  std::uint64_t count = 0;
  std::uint64_t first = 0;  // offsets
  std::uint64_t last = 0;
  std::string text;  // of the first
};

enum class EventKind {
  kPhase,  // a phase begins
  kWarmUpEnd,
  kOutage,       // a user had no session for `length`
  kUserLost,     // a user ended early, its session was gone
  kUserGivenUp,  // a user's call did not come back; the run ends without it
  kInterrupted
};

const char* NameOf(EventKind kind);  // "phase", "warm-up-end" and so on

struct Event {
  EventKind kind = EventKind::kPhase;
  std::uint64_t begin = 0;   // offset
  std::uint64_t length = 0;  // 0: a moment
  int user = 0;              // 0: all
  std::string text;
};

struct RunRecord {
  std::vector<PhaseRecord> phases;  // those that began
  Part measured;                    // over all phases
  IntervalSeries intervals;
  std::vector<ErrorRecord> errors;  // by their first time
  std::vector<Event> events;        // by their begin
  std::uint64_t more_events = 0;    // that came when the list was full
  std::uint64_t elapsed = 0;        // from the common start to the last user's end
  int users = 0;                    // of the phase with most
  int lost_users = 0;               // ended early, their session was gone
  int given_up_users = 0;           // their last call never returned
  bool interrupted = false;
};

}  // namespace lkbench
