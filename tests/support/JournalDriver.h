// SPDX-License-Identifier: Apache-2.0
// A driver on the scripted OCI whose operations go into the journal. Backup operations are answered as told
// (BackupDriver), everything else really happens. JournalTest is the fixture: a ConnectedDriver that has one,
// and a journal that is empty when a test starts.
#pragma once

#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "BackupDriver.h"
#include "ConnectedDriver.h"
#include "Journal.h"

namespace scripted {

class JournalDriver : public BackupDriver {
 public:
  using COracle8Driver::HandleError;
  int HandleError(CError* pError) override {
    Journal::NoteAlways(IsQuiet() ? "reported " + Level(*pError) + " " + pError->m_szErrorNumber.ToChar()
                                  : MessageCall(*pError));
    return BackupDriver::HandleError(pError);
  }
  int Commit() override {
    return Noted("Commit()", [&] { return BackupDriver::Commit(); });
  }
  int Rollback() override {
    return Noted("Rollback()", [&] { return BackupDriver::Rollback(); });
  }
  int Cancel() override {
    return Noted("Cancel()", [&] { return BackupDriver::Cancel(); });
  }
  int PrepareStatement(const wchar_t* szSQL, int nFlag) override {
    return Noted("PrepareStatement(" + Text(szSQL) + ", " + std::to_string(nFlag) + ")",
                 [&] { return BackupDriver::PrepareStatement(szSQL, nFlag); });
  }
  int ExecuteStatement(int nFlag) override {
    const int nResult = Noted("ExecuteStatement(" + std::to_string(nFlag) + ")",
                              [&] { return BackupDriver::ExecuteStatement(nFlag); });
    return m_executeResult.value_or(nResult);
  }
  int CloseStatement() override {
    return Noted("CloseStatement()", [&] { return BackupDriver::CloseStatement(); });
  }
  int Query(LKString szSQL, std::vector<std::vector<LKString>>& rows) override {
    return Noted("Query(" + Text(szSQL) + ")", [&] { return BackupDriver::Query(szSQL, rows); });
  }
  LKString GetServerVersion() override {
    return Noted("GetServerVersion()", [&] { return BackupDriver::GetServerVersion(); });
  }

  std::optional<int> m_executeResult;  // what ExecuteStatement returns; unset: its own result

 private:
  template <class Operation>
  static std::invoke_result_t<Operation> Noted(const std::string& event, Operation operation) {
    Journal::Note(event);
    const Quiet quiet;
    return operation();
  }
  static std::string Text(const LKString& szText) { return "\"" + szText.ToChar() + "\""; }
  static std::string Level(const CError& error) { return LevelName(error.m_eErrorLevel); }
  static std::string MessageCall(const CError& error) {
    const char* szKind = error.m_eErrorLevel == INFO_LEVEL      ? "Info"
                         : error.m_eErrorLevel == WARNING_LEVEL ? "Warning"
                         : error.m_eErrorLevel == ERROR_LEVEL   ? "Error"
                                                                : "Critical";
    return std::string("Handle") + szKind + "Msg(" + Text(error.m_szErrorMessage) +
           (error.m_bAlwaysDisplay ? ", " + std::to_string(error.m_bAlwaysDisplay) : "") + ")";
  }
};

class JournalTest : public ConnectedDriver<JournalDriver> {
 protected:
  JournalTest() { m_journal.WatchIgnoreList(m_driver); }

  Journal m_journal;
};

}  // namespace scripted
