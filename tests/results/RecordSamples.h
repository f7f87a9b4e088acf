// SPDX-License-Identifier: Apache-2.0
// A small RunRecord with numbers that a test can add up by hand.
#pragma once

#include "lkbench/workload/RunRecord.h"

namespace lkbench {

// `done` executions of 1, 2, ... ms and `failed` deadlocks.
inline XactTotals Totals(const std::string& name, int done, int failed) {
  XactTotals totals;
  totals.name = name;
  totals.class_name = "C" + name.substr(0, name.find(' '));
  totals.id = static_cast<int>(name.size());
  totals.executions = static_cast<std::uint64_t>(done + failed);
  totals.failures = static_cast<std::uint64_t>(failed);
  totals.rows = static_cast<std::uint64_t>(done);
  totals.errors[static_cast<size_t>(ErrorClass::kDeadlock)] = static_cast<std::uint64_t>(failed);
  for (int number = 1; number <= done; ++number) {
    totals.response.Record(static_cast<std::uint64_t>(number) * 1000000);
    totals.service.Record(static_cast<std::uint64_t>(number) * 500000);
    totals.database.Record(static_cast<std::uint64_t>(number) * 250000);
  }
  return totals;
}

// Two seconds: 10 inserts of 1 to 10 ms, 3 updates of 1 to 3 ms and one that ran into a deadlock.
inline Part SamplePart() {
  Part part;
  part.elapsed = 2000000000;
  part.xacts = {Totals("Insert Transaction", 10, 0), Totals("Update Transaction", 3, 1)};
  for (const XactTotals& each : part.xacts) part.total.Add(each);
  TableTotals table;
  static_cast<Tally&>(table) = part.total;
  table.number = 1;
  table.name = "LK_REP_TABLE1";
  table.columns = 7;
  table.response = part.total.response;
  part.tables = {table};
  return part;
}

inline RunRecord SampleRecord() {
  RunRecord record;
  PhaseRecord phase;
  phase.settings.name = "base, \"first\"";
  phase.end = 2000000000;
  phase.measured = SamplePart();
  phase.user_executions = {9, 5};
  record.phases = {phase};
  record.measured = phase.measured;
  Interval interval;
  interval.end = 1000000000;
  interval.users = 2;
  interval.total.executions = 14;
  interval.total.failures = 1;
  interval.total.response = DigestOf(phase.measured.total.response);
  interval.xacts.resize(2);
  interval.xacts[1].executions = 4;
  record.intervals.Append(interval);
  record.errors = {{ErrorClass::kDeadlock, 60, 1, 1500000000, 1500000000, "ORA-00060: deadlock </script>"}};
  record.events = {{EventKind::kOutage, 1000000000, 250000000, 2, "user 2: away for 0.25 s"}};
  record.elapsed = 2000000000;
  record.users = 2;
  return record;
}

}  // namespace lkbench
