// SPDX-License-Identifier: Apache-2.0
// Fault sweeps of the driver's own operations: the session, the generic statement, queries and backups.
#include "CommonRules.h"
#include "SweepTest.h"

namespace sweep {
namespace {

using scripted::Oci;

constexpr int kSessionHandles = 6;  // environment, two error handles, server, service context, session
constexpr char kLookUp[] = "SELECT COUNT(*) FROM USER_TABLES";
constexpr char kKey[] = "SELECT C.COLUMN_NAME FROM USER_CONSTRAINTS";

class Unconnected : public Subject {
 public:
  int Run() override { return m_driver.Connect(L"db", L"scott", L"tiger"); }
  void Finish() override { EXPECT_EQ(m_driver.Disconnect(), 1); }
  void Check(int nResult) override { EXPECT_EQ(m_driver.IsConnected(), nResult); }
};

class Disconnecting : public Subject {
 public:
  void Prepare() override {
    Connect();
    EXPECT_EQ(m_driver.PrepareStatement(L"DELETE FROM T", 0), 1);
  }
  int Run() override { return m_driver.Disconnect(); }
  void Check(int) override { EXPECT_EQ(m_driver.IsConnected(), 0); }
};

using Work = std::function<int(COracle8Driver&)>;

class Connected : public Subject {
 public:
  Connected(const Work& prepare, const Work& work) : m_prepare(prepare), m_work(work) {
    Oci().Answer(std::string(kLookUp) + " WHERE TABLE_NAME = 'T_BAK'", {{{"1"}}});
    for (const char* table : {"T", "T_BAK"})
      Oci().Answer(std::string(kKey) +
                       " K, USER_CONS_COLUMNS C WHERE K.CONSTRAINT_TYPE = 'P' AND K.TABLE_NAME = '" + table +
                       "' AND C.CONSTRAINT_NAME = K.CONSTRAINT_NAME AND C.TABLE_NAME = K.TABLE_NAME "
                       "ORDER BY C.POSITION",
                   {{{"ID"}}});
    Oci().Answer("SELECT A FROM T", {scripted::ResultSet(150, {"x"})});
    Connect();
  }
  void Prepare() override { EXPECT_EQ(m_prepare(m_driver), 1); }
  int Run() override { return m_work(m_driver); }
  void Finish() override { m_driver.CloseStatement(); }

 private:
  const Work m_prepare;
  const Work m_work;
};

template <class SubjectClass>
std::function<std::unique_ptr<Subject>()> Make() {
  return [] { return std::make_unique<SubjectClass>(); };
}

int Nothing(COracle8Driver&) { return 1; }
int PrepareIt(COracle8Driver& driver) { return driver.PrepareStatement(L"DELETE FROM T", 0); }

std::function<std::unique_ptr<Subject>()> Run(const Work& work, const Work& prepare = Nothing) {
  return [=] { return std::make_unique<Connected>(prepare, work); };
}

Rule Fails(const std::string& call, const std::string& report) {
  return {call, "", kAnyFailure, Effect{0, {"ERROR %N: " + report}}};
}

// The server may have something to say when it is attached to and when the session begins.
Rules ConnectRules() {
  const std::string report = "Cannot connect to \"db\" as \"scott\" (";
  const Effect no_environment{0, {"ERROR -1: " + report + "create the environment failed"}};
  const Effect no_handle{0, {"ERROR -1: " + report + "allocate a handle failed"}};
  return {{"OCIEnvNlsCreate", "", kAnyFailure, no_environment},
          {"OCIHandleAlloc", "", kAnyFailure, no_handle},
          {"OCIServerAttach", "", kInfo},
          Fails("OCIServerAttach", report + "attach to the server failed"),
          Fails("OCIAttrSet", report + "set the "),
          {"OCISessionBegin", "", kInfo, Effect{1, {"WARNING 0: ORA-24344: swept"}, kSessionHandles}},
          Fails("OCISessionBegin", report + "begin the session failed")};
}

Rules DisconnectRules() {
  return Rules{Fails("OCITransRollback", "Cannot disconnect in order (roll back failed)"),
               Fails("OCISessionEnd", "Cannot disconnect in order (end the session failed)"),
               Fails("OCIServerDetach", "Cannot disconnect in order (detach from the server failed)")} +
         Frees();
}

std::vector<Operation> SessionOperations() {
  return {{"Connect", Make<Unconnected>(), {1, {}, kSessionHandles}, ConnectRules()},
          {"Disconnect", Make<Disconnecting>(), {1}, DisconnectRules()},
          {"Commit",
           Run([](COracle8Driver& driver) { return driver.Commit(); }),
           {1},
           {Fails("OCITransCommit", "Cannot commit (commit failed)")}},
          {"Rollback",
           Run([](COracle8Driver& driver) { return driver.Rollback(); }),
           {1},
           {Fails("OCITransRollback", "Cannot roll back (roll back failed)")}},
          {"Cancel",
           Run([](COracle8Driver& driver) { return driver.Cancel(); }),
           {1},
           {Fails("OCIBreak", "Cannot cancel")}},
          {"ServerVersion",
           Run([](COracle8Driver& driver) { return driver.GetServerVersion().IsEmpty() ? 0 : 1; }),
           {1},
           {Fails("OCIServerVersion", "Cannot read the server version")}}};
}

// Two blocks are fetched; an end that comes early is an end.
int QueryRows(COracle8Driver& driver) {
  std::vector<std::vector<LKString>> rows;
  const int nResult = driver.Query(L"SELECT A FROM T", rows);
  EXPECT_TRUE(nResult == 1 || rows.empty());
  return nResult;
}

std::vector<Operation> StatementOperations() {
  const Work close = [](COracle8Driver& driver) { return driver.CloseStatement(); };
  const Work execute = [](COracle8Driver& driver) { return driver.ExecuteStatement(0); };
  const Effect not_prepared{0, {"ERROR %N: Cannot prepare: DELETE FROM T ("}};
  const Effect not_executed{0, {"ERROR %N: Cannot execute the statement (execute failed)"}, 1};
  return {{"PrepareStatement", Run(PrepareIt), {1, {}, 1}, Statement("DELETE FROM T", not_prepared)},
          {"PrepareAnotherStatement",
           Run(PrepareIt, PrepareIt),
           {1, {}, 1},
           Statement("DELETE FROM T", not_prepared) + Frees()},
          {"ExecuteStatement",
           Run(execute, PrepareIt),
           {1, {}, 1},
           {{"OCIStmtExecute", "DELETE FROM T", kAnyFailure, not_executed}}},
          {"CloseStatement", Run(close, PrepareIt), {1}, Frees()},
          {"Query", Run(QueryRows), {1}, DriverQuery("SELECT A FROM T", {0}, {}) + Frees()}};
}

Rules CopyRules(const std::string& to) {
  return DriverQuery(kKey, {0}, {}) + DriverStatement("CREATE TABLE " + to, {0}) +
         DriverStatement("ALTER TABLE " + to, {0}) + Frees();
}

std::vector<Operation> BackupOperations() {
  const Effect no_backup{0, {"ERROR -1: Cannot restore table T: it has no backup T_BAK."}};
  return {
      {"BackupExists",
       Run([](COracle8Driver& driver) { return driver.BackupExists(L"T"); }),
       {1},
       DriverQuery(kLookUp, {0}, Effect{0}) + Frees()},
      {"CreateBackupTable",
       Run([](COracle8Driver& driver) { return driver.CreateBackupTable(L"T", LKString()); }),
       {1},
       CopyRules("T_BAK")},
      {"RestoreFromBackup",
       Run([](COracle8Driver& driver) { return driver.RestoreFromBackup(L"T"); }),
       {1},
       DriverQuery(kLookUp, {0}, no_backup) + DriverDrop("DROP TABLE T", {0}) + CopyRules("T")},
      {"DropBackupTable",
       Run([](COracle8Driver& driver) { return driver.DropBackupTable(L"T"); }),
       {1},
       DriverDrop("DROP TABLE T_BAK", {0}) + Frees()},
      {"PrepareRenameFromBackup",
       Run([](COracle8Driver& driver) { return driver.PrepareRenameFromBackup(L"T"); }),
       {1},
       DriverDrop("DROP TABLE T", {0}) + Frees()},
      {"RenameToBackup",
       Run([](COracle8Driver& driver) { return driver.RenameToBackup(L"T"); }),
       {1},
       DriverDrop("DROP TABLE T_BAK", {0}) + DriverStatement("ALTER TABLE T RENAME TO T_BAK", {0}) + Frees()},
      {"ChangeTableName",
       Run([](COracle8Driver& driver) { return driver.ChangeTableName(L"T", 0); }),
       {1},
       DriverStatement("ALTER TABLE T_BAK RENAME TO T", {0}) + Frees()}};
}

SWEEP(Session, SessionOperations());
SWEEP(GenericStatement, StatementOperations());
SWEEP(Backup, BackupOperations());

}  // namespace
}  // namespace sweep
