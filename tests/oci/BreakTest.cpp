// SPDX-License-Identifier: Apache-2.0
#include <atomic>
#include <chrono>
#include <mutex>
#include <thread>

#include "Contract.h"

namespace oci_test {
namespace {

OCI_CONTRACT_SUITE(Breaks);

// Breaks the client's calls, again and again, from when it is made until it goes. A break that finds the
// session idle has no effect, so that is no harm.
class Interrupter {
 public:
  Interrupter(void* handle, OCIEnv* env) : m_handle(handle) {
    OCIHandleAlloc(env, reinterpret_cast<void**>(&m_error), OCI_HTYPE_ERROR, 0, nullptr);
    m_thread = std::thread([this] {
      while (!m_done) {
        m_failed = m_failed || OCIBreak(m_handle, m_error) != OCI_SUCCESS;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
      }
    });
  }
  ~Interrupter() {
    m_done = true;
    m_thread.join();
    OCIHandleFree(m_error, OCI_HTYPE_ERROR);
    EXPECT_FALSE(m_failed);
  }

 private:
  void* m_handle;
  OCIError* m_error = nullptr;
  std::atomic<bool> m_done{false};
  std::atomic<bool> m_failed{false};
  std::thread m_thread;
};

TEST_P(Breaks, ABlockedQueryIsInterruptedAndTheSessionGoesOn) {
  {
    Interrupter interrupter(client.service, client.env);
    Statement query(client, "SELECT SLEEP(60) FROM DUAL");
    EXPECT_EQ(query.Execute(0), OCI_ERROR);
    EXPECT_EQ(client.Code(), 1013);
  }
  EXPECT_EQ(Value(client, "SELECT 5 FROM DUAL"), "5");
}

TEST_P(Breaks, AServerHandleStandsForItsSessions) {
  Interrupter interrupter(client.server, client.env);
  Statement query(client, "SELECT SLEEP(60) FROM DUAL");
  EXPECT_EQ(query.Execute(0), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1013);
}

TEST_P(Breaks, AWaitForARowLockIsInterruptedAndEarlierWorkKept) {
  Table("T_BREAK", "ID NUMBER NOT NULL, N NUMBER, PRIMARY KEY(ID)");
  MustExec(client, "INSERT INTO T_BREAK VALUES (1, 0)");
  client.Commit();
  const auto holder = Another();
  MustExec(*holder, "UPDATE T_BREAK SET N = 1 WHERE ID = 1");
  MustExec(client, "INSERT INTO T_BREAK VALUES (2, 0)");
  {
    Interrupter interrupter(client.service, client.env);
    EXPECT_EQ(Exec(client, "UPDATE T_BREAK SET N = 2 WHERE ID = 1"), OCI_ERROR);
    EXPECT_EQ(client.Code(), 1013);
  }
  client.Commit();
  holder->Rollback();
  EXPECT_EQ(Rows(*holder, "SELECT ID, N FROM T_BREAK ORDER BY ID"),
            (std::vector<std::vector<std::string>>{{"1", "0"}, {"2", "0"}}));
}

TEST_P(Breaks, AWaitingDdlIsInterrupted) {
  Table("T_BREAK", "ID NUMBER");
  const auto holder = Another();
  MustExec(*holder, "INSERT INTO T_BREAK VALUES (1)");
  Interrupter interrupter(client.service, client.env);
  EXPECT_EQ(Exec(client, "DROP TABLE T_BREAK"), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1013);
}

TEST_P(Breaks, ALoopInABlockIsInterruptedAndTheBlockUndone) {
  Table("T_BREAK", "ID NUMBER");
  MustExec(client, "INSERT INTO T_BREAK VALUES (0)");
  {
    Interrupter interrupter(client.service, client.env);
    EXPECT_EQ(Exec(client, "BEGIN FOR I IN 1..100000000 LOOP INSERT INTO T_BREAK VALUES (I); END LOOP; END;"),
              OCI_ERROR);
    EXPECT_EQ(client.Code(), 1013);
  }
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_BREAK"), "1");
}

TEST_P(Breaks, AnArrayOfSlowRowsStopsBetweenOrInThem) {
  Table("T_BREAK", "ID NUMBER");
  MustExec(client, "INSERT INTO T_BREAK VALUES (0)");
  Statement update(client, "UPDATE T_BREAK SET ID = ID + SLEEP(:1) + 1");
  std::vector<double> seconds(1000, 0.05);
  update.Bind(1, seconds.data(), 8, SQLT_FLT);
  Interrupter interrupter(client.service, client.env);
  EXPECT_EQ(update.Execute(1000), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1013);
  EXPECT_LT(update.RowCount(), 1000u);
}

TEST_P(Breaks, AnIdleSessionIsNotTouched) {
  EXPECT_EQ(OCIBreak(client.service, client.error), OCI_SUCCESS);
  EXPECT_EQ(Value(client, "SELECT 5 FROM DUAL"), "5");
  Client unconnected;
  EXPECT_EQ(OCIBreak(unconnected.service, unconnected.error), OCI_SUCCESS);
}

TEST_P(Breaks, AResetIsASuccess) {
  EXPECT_EQ(OCIBreak(client.service, client.error), OCI_SUCCESS);
  EXPECT_EQ(OCIReset(client.service, client.error), OCI_SUCCESS);
  EXPECT_EQ(Value(client, "SELECT 5 FROM DUAL"), "5");
}

// Breaks without a pause while it is switched on. When Off returns, no break is under way.
class BreakRain {
 public:
  explicit BreakRain(Client& client) : m_client(client) {
    OCIHandleAlloc(client.env, reinterpret_cast<void**>(&m_error), OCI_HTYPE_ERROR, 0, nullptr);
    m_thread = std::thread([this] {
      while (!m_done) {
        std::lock_guard lock(m_breaking);
        if (m_on) OCIBreak(m_client.service, m_error);
      }
    });
  }
  ~BreakRain() {
    m_done = true;
    m_thread.join();
    OCIHandleFree(m_error, OCI_HTYPE_ERROR);
  }
  void On() { m_on = true; }
  void Off() {
    std::lock_guard none_under_way(m_breaking);
    m_on = false;
  }

 private:
  Client& m_client;
  OCIError* m_error = nullptr;
  std::mutex m_breaking;
  std::atomic<bool> m_on{false}, m_done{false};
  std::thread m_thread;
};

// Two short calls by turns. Breaks rain on the first; the second must not be hit, however late a kill was
// sent.
TEST_P(Breaks, ABreakNeverHitsALaterCall) {
  Statement target(client, "SELECT SLEEP(0.001) FROM DUAL");
  Statement innocent(client, "SELECT 1 FROM DUAL");
  BreakRain rain(client);
  int broken = 0;
  for (int i = 0; i < 300; ++i) {
    rain.On();
    if (target.Execute(0) != OCI_SUCCESS) {
      EXPECT_EQ(client.Code(), 1013);
      ++broken;
    }
    rain.Off();
    EXPECT_EQ(innocent.Execute(0), OCI_SUCCESS) << client.LastReport().text;
  }
  EXPECT_GT(broken, 0);
}

TEST_P(Breaks, ACommitOrRollbackIsNotInterrupted) {
  Table("T_BREAK", "ID NUMBER");
  BreakRain rain(client);
  for (int i = 0; i < 100; ++i) {
    ASSERT_EQ(Exec(client, "INSERT INTO T_BREAK VALUES (1)"), OCI_SUCCESS) << client.LastReport().text;
    rain.On();
    EXPECT_EQ(i % 2 == 0 ? client.Commit() : client.Rollback(), OCI_SUCCESS) << client.LastReport().text;
    rain.Off();
  }
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_BREAK"), "50");
}

TEST_P(Breaks, ManySessionsAreInterruptedAtOnce) {
  constexpr int kSessions = 8;
  std::vector<std::unique_ptr<Client>> clients;
  for (int i = 0; i < kSessions; ++i) clients.push_back(Another());
  std::vector<int> codes(kSessions);
  std::vector<std::thread> sleepers;
  std::atomic<int> returned{0};
  for (int i = 0; i < kSessions; ++i)
    sleepers.emplace_back([&, i] {
      Exec(*clients[i], "SELECT SLEEP(60) FROM DUAL");
      codes[i] = clients[i]->Code();
      ++returned;
    });
  OCIError* error = nullptr;
  OCIHandleAlloc(client.env, reinterpret_cast<void**>(&error), OCI_HTYPE_ERROR, 0, nullptr);
  while (returned < kSessions) {
    for (const auto& sleeper : clients) OCIBreak(sleeper->service, error);
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  for (auto& sleeper : sleepers) sleeper.join();
  OCIHandleFree(error, OCI_HTYPE_ERROR);
  EXPECT_EQ(codes, std::vector<int>(kSessions, 1013));
}

}  // namespace
}  // namespace oci_test
