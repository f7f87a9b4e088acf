// SPDX-License-Identifier: Apache-2.0
// The fixture of the call lists of the load: tables with an ID alone, three rows each, two rows a commit.
#pragma once

#include "HostTaps.h"
#include "IdTable.h"
#include "LoadFixture.h"

namespace scripted {

class LoadCalls : public LoadTestOn<JournalTest> {
 protected:
  LoadCalls() {
    SetRowsPerCommit(2);
    m_properties.SetScale(0.003);
  }
  void HaveIdTables(int nTables) {
    m_properties.GetRepBenchmarkProperties().SetTableNumber(nTables);
    for (int n = 1; n <= nTables; ++n) {
      DescribeTable("LK_REP_TABLE" + std::to_string(n), {IdColumn()});
      DescribeTable("LK_REP_TABLE" + std::to_string(n) + "_BAK", {IdColumn()});
    }
  }
  Events PreBenchmark(CXact& load) {
    return m_journal.Run([&] { return load.PreBenchmark(); });
  }
  Events PreIteration(CXact& load) {
    return m_journal.Run([&] { return load.PreIteration(); });
  }
  Events Execute(CXact& load) {
    return m_journal.Run([&] { return load.Execute(); });
  }
  Events PostBenchmark(CXact& load) {
    return m_journal.Run([&] { return load.PostBenchmark(); });
  }
};

// The three rows of a table in two batches: one full, after which the timer is read, and the rest.
inline Events TwoBatches(const IdTable& table) { return {table.Batch(2), "Read()", table.Batch(1)}; }

// A load's whole execution around what it does with its tables.
inline Events Loaded(std::initializer_list<Events> tables) {
  return Together({{"SetStartTime()"}, Together(tables), {"Reset()", "returned 1"}});
}

// What is said and done about the backup of a table.
inline Events CreateBackup(const std::string& table) {
  return {"HandleInfoMsg(\"Backup for table " + table +
              " could not be found.  Recreating backup using normal inserts.\")",
          "CreateBackupTable(" + table + ", \"\")"};
}
inline Events Restore(const std::string& table) {
  return {"HandleInfoMsg(\"Creating table " + table + " from backup.\")", "RestoreFromBackup(" + table + ")"};
}
inline Events Restored(const std::string& table) {
  return Together({Restore(table), {"HandleInfoMsg(\"" + table + " created successfully from backup.\")"}});
}
inline Events NotRestored(const std::string& table) {
  return Together(
      {Restore(table), {"HandleWarningMsg(\"Failed to create table " + table + " from backup.\")"}});
}

}  // namespace scripted
