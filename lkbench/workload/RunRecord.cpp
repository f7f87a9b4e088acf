// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/RunRecord.h"

#include <map>
#include <string>

#include "lkbench/Text.h"

namespace lkbench {

void XactTotals::Add(const XactTotals& other) {
  Tally::Add(other);
  response.Add(other.response);
  service.Add(other.service);
  database.Add(other.database);
}

void TableTotals::Add(const TableTotals& other) {
  Tally::Add(other);
  response.Add(other.response);
}

void Part::Add(const Part& other) {
  elapsed += other.elapsed;
  processor += other.processor;
  total.Add(other.total);
  if (xacts.empty()) xacts.resize(other.xacts.size());
  for (std::size_t i = 0; i < other.xacts.size(); ++i) {
    XactTotals& xact = xacts[i];
    if (xact.name.empty()) xact.name = other.xacts[i].name;
    if (xact.class_name.empty()) xact.class_name = other.xacts[i].class_name;
    xact.id = other.xacts[i].id;
    xact.Add(other.xacts[i]);
  }
  std::map<int, TableTotals> sums;
  for (TableTotals& table : tables) sums.emplace(table.number, std::move(table));
  for (const TableTotals& table : other.tables) {
    const auto [place, is_new] = sums.try_emplace(table.number, table);
    if (!is_new) place->second.Add(table);
  }
  tables.clear();
  for (auto& [number, table] : sums) tables.push_back(std::move(table));
}

std::vector<TableTotals> ByColumnCount(const std::vector<TableTotals>& tables) {
  std::map<int, TableTotals> groups;
  for (const TableTotals& table : tables) {
    TableTotals& group = groups[table.columns];
    group.columns = table.columns;
    group.name =
        table.columns == 0 ? table.name : Plural(static_cast<std::uint64_t>(table.columns), "column");
    group.Add(table);
  }
  std::vector<TableTotals> list;
  list.reserve(groups.size());
  for (auto& [columns, group] : groups) list.push_back(std::move(group));
  return list;
}

const char* NameOf(EventKind kind) {
  switch (kind) {
    case EventKind::kPhase:
      return "phase";
    case EventKind::kWarmUpEnd:
      return "warm-up-end";
    case EventKind::kOutage:
      return "outage";
    case EventKind::kUserLost:
      return "user-lost";
    case EventKind::kUserGivenUp:
      return "user-given-up";
    case EventKind::kInterrupted:
      break;
  }
  return "interrupted";
}

}  // namespace lkbench
