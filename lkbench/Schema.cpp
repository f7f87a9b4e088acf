// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Schema.h"

#include <algorithm>

#include "lkbench/Failure.h"
#include "lkbench/Text.h"

namespace lkbench {
namespace {

constexpr const char* kStateTable = "LKBENCH_STATE";
constexpr const char* kPropertiesTable = "LK_REP_PROPERTIES";
constexpr const char* kSequence = "LK_REP_ID_SEQ";
const std::string kTablePrefix = "LK_REP_TABLE";
const std::string kBackupSuffix = "_BAK";

// The number in LK_REP_TABLE<number>; 0 when the name is no such name.
int TableNumber(const std::string& name) {
  std::int64_t number = 0;
  if (!name.starts_with(kTablePrefix) || !ParseInteger(name.substr(kTablePrefix.size()), number)) return 0;
  return number >= 1 && number <= 1'000'000'000 && TableName(static_cast<int>(number)) == name
             ? static_cast<int>(number)
             : 0;
}

void NoteTable(Schema& schema, const std::string& name) {
  const bool is_backup = name.ends_with(kBackupSuffix);
  const int number = TableNumber(is_backup ? name.substr(0, name.size() - kBackupSuffix.size()) : name);
  if (name == kStateTable) schema.has_state = true;
  if (name == kPropertiesTable) schema.has_properties = true;
  if (number > 0) (is_backup ? schema.tables[number].has_backup : schema.tables[number].exists) = true;
  if (number > 0 || name == kPropertiesTable) schema.an_object = name;
}

void ReadObjects(Schema& schema, VirtualUser& user) {
  for (const auto& row : user.Query("SELECT TABLE_NAME FROM USER_TABLES WHERE TABLE_NAME LIKE 'LK%'"))
    NoteTable(schema, Upper(row.at(0)));
  const auto sequences = user.Query(
      std::string("SELECT COUNT(*) FROM USER_SEQUENCES WHERE SEQUENCE_NAME = '") + kSequence + "'");
  schema.has_sequence = sequences.at(0).at(0) != "0";
  if (schema.has_sequence && schema.an_object.empty()) schema.an_object = kSequence;
}

void ReadProperties(Schema& schema, VirtualUser& user) {
  const auto rows =
      user.Query("SELECT PROP_VALUE FROM LK_REP_PROPERTIES WHERE PROP_NAME = 'Number Of Tables'");
  std::int64_t count = 0;
  if (!rows.empty() && ParseInteger(rows.front().at(0), count)) schema.table_count = static_cast<int>(count);
}

// "table.3.scale" -> {"table", 3, "scale"}; number 0 when the name has another form.
struct StateName {
  std::string kind;
  int number = 0;
  std::string what;
};

StateName Split(const std::string& name) {
  const size_t first = name.find('.');
  const size_t second = name.find('.', first + 1);
  std::int64_t number = 0;
  if (second == std::string::npos || !ParseInteger(name.substr(first + 1, second - first - 1), number))
    return {};
  return {name.substr(0, first), static_cast<int>(number), name.substr(second + 1)};
}

void ApplyState(Schema& schema, const std::string& name, const std::string& value) {
  double scale = 0;
  ParseReal(value, scale);
  if (name == "creating") schema.status = SchemaStatus::kCreating;
  if (name == "scale") schema.created_scale = scale;
  const StateName split = Split(name);
  if (split.number == 0) return;
  TableState& table = schema.tables[split.number];
  if (split.what == "loading")
    table.loading = value;
  else if (split.kind == "backup")
    table.backup_scale = table.has_backup ? scale : 0;
  else
    table.scale = scale;
}

std::string StateTableSql() {
  return std::string("CREATE TABLE ") + kStateTable +
         " (STATE_NAME VARCHAR2(64) NOT NULL, STATE_VALUE VARCHAR2(255) NOT NULL, PRIMARY KEY(STATE_NAME))";
}

std::string Entry(const char* kind, int number, const char* what) {
  return std::string(kind) + '.' + std::to_string(number) + '.' + what;
}

}  // namespace

std::string TableName(int number) { return kTablePrefix + std::to_string(number); }
std::string BackupName(int number) { return TableName(number) + kBackupSuffix; }

TableState Schema::Table(int number) const {
  const auto found = tables.find(number);
  return found == tables.end() ? TableState{} : found->second;
}

double Schema::HighestScale() const {
  double highest = 0;
  for (const auto& [number, table] : tables) highest = std::max(highest, table.scale);
  return highest;
}

double Schema::LowestScale(int first, int last) const {
  double lowest = Table(first).scale;
  for (int number = first; number <= last; ++number) lowest = std::min(lowest, Table(number).scale);
  return lowest;
}

int Schema::HighestTable() const {
  int highest = 0;
  for (const auto& [number, table] : tables)
    if (table.exists) highest = number;
  return highest;
}

Schema ReadSchema(VirtualUser& user) {
  Schema schema;
  ReadObjects(schema, user);
  if (!schema.has_state) {
    schema.status = schema.an_object.empty() ? SchemaStatus::kNone : SchemaStatus::kForeign;
    return schema;
  }
  schema.status = SchemaStatus::kReady;
  for (const auto& row : user.Query(std::string("SELECT STATE_NAME, STATE_VALUE FROM ") + kStateTable))
    ApplyState(schema, row.at(0), row.at(1));
  if (!schema.has_properties)
    schema.status = SchemaStatus::kCreating;
  else
    ReadProperties(schema, user);
  return schema;
}

void StateChanges::Set(const std::string& name, const std::string& value) {
  Remove(name);
  m_changes.back() += std::string("INSERT INTO ") + kStateTable + " (STATE_NAME, STATE_VALUE) VALUES('" +
                      name + "', '" + value + "'); ";
}

void StateChanges::Remove(const std::string& name) {
  m_changes.push_back(std::string("DELETE FROM ") + kStateTable + " WHERE STATE_NAME = '" + name + "'; ");
}

void StateChanges::SetTableScale(int number, double scale) {
  Set(Entry("table", number, "scale"), Short(scale));
}
void StateChanges::SetBackupScale(int number, double scale) {
  Set(Entry("backup", number, "scale"), Short(scale));
}
void StateChanges::SetLoading(int number, const std::string& what) {
  Set(Entry("table", number, "loading"), what);
}
void StateChanges::ClearLoading(int number) { Remove(Entry("table", number, "loading")); }

void StateChanges::Forget(int number) {
  Remove(Entry("table", number, "scale"));
  Remove(Entry("backup", number, "scale"));
  ClearLoading(number);
}

void StateChanges::Write(VirtualUser& user) {
  constexpr size_t kChangesPerBlock = 200;
  for (size_t begin = 0; begin < m_changes.size(); begin += kChangesPerBlock) {
    std::string block = "BEGIN ";
    const size_t end = std::min(m_changes.size(), begin + kChangesPerBlock);
    for (size_t i = begin; i < end; ++i) block += m_changes[i];
    user.Run(block + "END;");
  }
  m_changes.clear();
}

void CreateStateTable(VirtualUser& user) { user.Run(StateTableSql()); }
void DropStateTable(VirtualUser& user) { user.Run(std::string("DROP TABLE ") + kStateTable); }

}  // namespace lkbench
