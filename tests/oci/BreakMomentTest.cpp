// SPDX-License-Identifier: Apache-2.0
// Breaks at every moment of a session's life, once, twice and from several threads. Afterwards the session
// works.
#include <atomic>
#include <future>
#include <thread>

#include "Contract.h"
#include "Waiting.h"

namespace oci_test {
namespace {

constexpr char kSleep[] = "SELECT SLEEP(60) FROM DUAL";
constexpr char kCancelled[] = "ORA-01013: user requested cancel of current operation\n";

class BreakMoment : public Contract {
 protected:
  BreakMoment() : watcher(Another()) {}
  ~BreakMoment() override { EXPECT_EQ(Value(client, "SELECT 5 FROM DUAL"), "5") << "the session works"; }

  sword Break() { return OCIBreak(client.service, watcher->error); }

  const std::unique_ptr<Client> watcher;
};
INSTANTIATE_TEST_SUITE_P(Over, BreakMoment, testing::Values(Transport::kSocket, Transport::kTls),
                         TransportName);

TEST_P(BreakMoment, OneBreakEndsALongStatement) {
  WaitingCall sleep(client, *watcher, kSleep);
  EXPECT_EQ(Break(), OCI_SUCCESS);
  EXPECT_EQ(sleep.Status(), OCI_ERROR);
  EXPECT_EQ(client.LastReport().text, kCancelled);
}

TEST_P(BreakMoment, TwoBreaksEndOneStatement) {
  WaitingCall sleep(client, *watcher, kSleep);
  EXPECT_EQ(Break(), OCI_SUCCESS);
  EXPECT_EQ(Break(), OCI_SUCCESS);
  EXPECT_EQ(sleep.Status(), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1013);
  for (int i = 0; i < 20; ++i) EXPECT_EQ(Exec(client, "SELECT SLEEP(0.002) FROM DUAL"), OCI_SUCCESS);
}

TEST_P(BreakMoment, BreaksOfManyThreadsEndOneStatement) {
  WaitingCall sleep(client, *watcher, kSleep);
  std::vector<std::thread> threads;
  std::atomic<int> failures{0};
  for (int i = 0; i < 8; ++i)
    threads.emplace_back([&] {
      for (int round = 0; round < 50; ++round) failures += Break() != OCI_SUCCESS;
    });
  EXPECT_EQ(sleep.Status(), OCI_ERROR);
  EXPECT_EQ(client.Code(), 1013);
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(failures, 0);
}

TEST_P(BreakMoment, BreaksWhileIdleHaveNoEffectOnWhatFollows) {
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(Break(), OCI_SUCCESS);
    EXPECT_EQ(Exec(client, "SELECT SLEEP(0.002) FROM DUAL"), OCI_SUCCESS);
  }
  EXPECT_EQ(Break(), OCI_SUCCESS);
  EXPECT_EQ(OCIReset(client.service, client.error), OCI_SUCCESS);
}

TEST_P(BreakMoment, EachStatementNeedsABreakOfItsOwn) {
  for (int i = 0; i < 3; ++i) {
    WaitingCall sleep(client, *watcher, kSleep);
    EXPECT_EQ(Break(), OCI_SUCCESS);
    EXPECT_EQ(sleep.Status(), OCI_ERROR);
    EXPECT_EQ(client.Code(), 1013);
    EXPECT_EQ(OCIReset(client.service, client.error), OCI_SUCCESS);
  }
}

// An array insert whose row 3 waits for a key of another session.
class BreakArray : public BreakMoment {
 protected:
  BreakArray() : holder(Another()), insert(client) {
    Table("T_BREAKS", "ID NUMBER NOT NULL, PRIMARY KEY(ID)");
    MustExec(*holder, "INSERT INTO T_BREAKS VALUES (3)");
    MustExec(client, "INSERT INTO T_BREAKS VALUES (100)");
    insert.Prepare("INSERT INTO T_BREAKS VALUES (:1)");
    insert.Bind(1, m_ids, 8, SQLT_FLT);
  }
  void BreakWhileExecuting(ub4 mode) {
    const std::string id = Value(client, "SELECT CONNECTION_ID() FROM DUAL");
    auto status = std::async(std::launch::async, [&] { return insert.Execute(5, mode); });
    while (Value(*watcher,
                 "SELECT COUNT(*) FROM INFORMATION_SCHEMA.PROCESSLIST WHERE INFO LIKE 'INSERT%' AND "
                 "TIME_MS > 20 AND ID = " +
                     id) == "0") {
    }
    EXPECT_EQ(Break(), OCI_SUCCESS);
    EXPECT_EQ(status.get(), OCI_ERROR);
    EXPECT_EQ(client.LastReport().text, kCancelled);
    EXPECT_EQ(insert.RowCount(), 0u);
    holder->Rollback();
    EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_BREAKS"), "1") << "the 100 of before stays";
    ASSERT_EQ(insert.Execute(5, mode), OCI_SUCCESS) << client.LastReport().text;
    EXPECT_EQ(insert.RowCount(), 5u);
  }

  const std::unique_ptr<Client> holder;
  Statement insert;

 private:
  double m_ids[5] = {1, 2, 3, 4, 5};
};
INSTANTIATE_TEST_SUITE_P(Over, BreakArray, testing::Values(Transport::kSocket, Transport::kTls),
                         TransportName);

// The server runs an array as one statement, and undoes it whole.
TEST_P(BreakArray, ABreakEndsItAndNothingOfItStays) { BreakWhileExecuting(OCI_DEFAULT); }

TEST_P(BreakArray, ABreakIsNoRowErrorToCollect) { BreakWhileExecuting(OCI_BATCH_ERRORS); }

TEST_P(BreakArray, ABreakCommitsNothing) {
  BreakWhileExecuting(OCI_COMMIT_ON_SUCCESS);
  EXPECT_EQ(Value(*watcher, "SELECT COUNT(*) FROM T_BREAKS"), "6") << "of the second execution";
}

}  // namespace
}  // namespace oci_test
