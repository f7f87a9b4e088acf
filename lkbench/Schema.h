// SPDX-License-Identifier: Apache-2.0
// What a database schema holds of the benchmark, and what lkbench knows about it. lkbench keeps its own
// table, LKBENCH_STATE, of names and values beside the benchmark's objects:
//
//   creating          there while objects are being created: FIRST..LAST
//   scale             the scale that the schema was created for
//   table.N.scale     rows 1 .. 1000 * scale of table N are loaded; missing: none are
//   backup.N.scale    the same of its backup
//   table.N.loading   a load has begun and not ended well: "tables X" or "backup X", X the scale it went for
//
// The rule that makes it right at every moment, a kill included: a scale is lowered before rows above it are
// deleted, and raised after all rows below it are there. So rows above the recorded scale may exist (a
// workload or a broken load left them) and are removed before anything is loaded; rows below it are never
// missing.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "lkbench/Users.h"

namespace lkbench {

struct TableState {
  bool exists = false;
  bool has_backup = false;
  double scale = 0;
  double backup_scale = 0;  // of an existing backup; one that lkbench knows nothing of counts as empty
  std::string loading;

  // The load that was broken off went through the backup: the table itself may be missing or half made.
  bool IsBackupLoad() const { return loading.starts_with("backup"); }
};

enum class SchemaStatus {
  kNone,      // nothing of the benchmark is there
  kForeign,   // benchmark objects, but not made by lkbench
  kCreating,  // a create was broken off
  kReady
};

struct Schema {
  SchemaStatus status = SchemaStatus::kNone;
  std::string an_object;  // one of the benchmark's objects that are there
  bool has_state = false;
  bool has_properties = false;
  bool has_sequence = false;
  int table_count = 0;  // as the properties table says
  std::optional<double> created_scale;
  std::map<int, TableState> tables;  // by table number

  TableState Table(int number) const;
  double HighestScale() const;
  double LowestScale(int first, int last) const;
  int HighestTable() const;  // that exists; 0: none
};

Schema ReadSchema(VirtualUser& user);

std::string TableName(int number);
std::string BackupName(int number);

// Changes of LKBENCH_STATE: collected, then written in as few transactions as possible.
class StateChanges {
 public:
  void Set(const std::string& name, const std::string& value);
  void Remove(const std::string& name);
  void SetTableScale(int number, double scale);
  void SetBackupScale(int number, double scale);
  void SetLoading(int number, const std::string& what);
  void ClearLoading(int number);
  void Forget(int number);  // everything about a table
  void Write(VirtualUser& user);

 private:
  std::vector<std::string> m_changes;  // each whole, as statements of a block
};

void CreateStateTable(VirtualUser& user);
void DropStateTable(VirtualUser& user);

}  // namespace lkbench
