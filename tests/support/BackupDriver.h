// SPDX-License-Identifier: Apache-2.0
// A driver whose backup operations are written down and answered as told instead of running SQL.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "Journal.h"
#include "oracle8/Oracle8Driver.h"

namespace scripted {

class BackupDriver : public COracle8Driver {
 public:
  int PrepareRenameFromBackup(LKString szTable) override { return Note("PrepareRenameFromBackup", szTable); }
  int RenameToBackup(LKString szTable) override { return Note("RenameToBackup", szTable); }
  int CreateBackupTable(LKString szTable, LKString szOptions) override {
    return Note("CreateBackupTable", szTable, ", \"" + szOptions.ToChar() + "\"");
  }
  int RestoreFromBackup(LKString szTable) override {
    if (m_onRestore) m_onRestore();
    return Note("RestoreFromBackup", szTable);
  }
  int BackupExists(LKString szTable) override {
    Note("BackupExists", szTable);
    return m_backups.contains(szTable.ToChar()) ? 1 : 0;
  }
  int DropBackupTable(LKString szTable) override { return Note("DropBackupTable", szTable); }

  std::vector<std::string> m_operations;  // "DropBackupTable(LK_REP_TABLE1)"
  std::set<std::string> m_backups;        // tables whose backup exists
  std::set<std::string> m_failing;        // operations, as they are written down, that answer 0
  std::function<void()> m_onRestore;

 private:
  int Note(const char* szOperation, const LKString& szTable, const std::string& more = {}) {
    m_operations.push_back(std::string(szOperation) + "(" + szTable.ToChar() + more + ")");
    Journal::Note(m_operations.back());
    return m_failing.contains(m_operations.back()) ? 0 : 1;
  }
};

}  // namespace scripted
