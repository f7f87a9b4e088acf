// SPDX-License-Identifier: Apache-2.0
// Sessions that meet at the same rows: who waits, who is told, what each may read.
#include <future>

#include "Contract.h"
#include "Waiting.h"

namespace oci_test {
namespace {

class Locks : public Contract {
 protected:
  Locks() : other(Another()), watcher(Another()) {
    Table("T_LOCKS", "ID NUMBER NOT NULL, N NUMBER, PRIMARY KEY(ID)");
    MustExec(client, "INSERT INTO T_LOCKS VALUES (1, 0)");
    MustExec(client, "INSERT INTO T_LOCKS VALUES (2, 0)", OCI_COMMIT_ON_SUCCESS);
  }
  static std::string Set(int id, int n) {
    return "UPDATE T_LOCKS SET N = " + std::to_string(n) + " WHERE ID = " + std::to_string(id);
  }
  std::string N(Client& reader, int id) {
    return Value(reader, "SELECT N FROM T_LOCKS WHERE ID = " + std::to_string(id));
  }

  // So that the server ends the client's transaction, the smaller one, in a deadlock of the two.
  void GiveMoreWorkToTheOther() {
    MustExec(*other,
             "INSERT INTO T_LOCKS SELECT ROWNUM + 10, 0 FROM INFORMATION_SCHEMA.COLUMNS WHERE ROWNUM <= 50");
  }

  const std::unique_ptr<Client> other, watcher;
};
INSTANTIATE_TEST_SUITE_P(Over, Locks, testing::Values(Transport::kSocket, Transport::kTls), TransportName);

TEST_P(Locks, AWriterWaitsForTheRowAndGoesOnAfterTheCommit) {
  MustExec(client, Set(1, 5));
  WaitingCall update(*other, *watcher, "UPDATE T_LOCKS SET N = N + 1 WHERE ID = 1");
  client.Commit();
  EXPECT_EQ(update.Status(), OCI_SUCCESS) << other->LastReport().text;
  other->Commit();
  EXPECT_EQ(N(client, 1), "6") << "upon what the first one left";
}

TEST_P(Locks, AWriterWaitsForTheRowAndGoesOnAfterTheRollback) {
  MustExec(client, Set(1, 5));
  WaitingCall update(*other, *watcher, "UPDATE T_LOCKS SET N = N + 1 WHERE ID = 1");
  client.Rollback();
  EXPECT_EQ(update.Status(), OCI_SUCCESS);
  EXPECT_EQ(N(*other, 1), "1");
}

TEST_P(Locks, OtherRowsAreFree) {
  MustExec(client, Set(1, 5));
  EXPECT_EQ(Exec(*other, Set(2, 7)), OCI_SUCCESS);
  EXPECT_EQ(Exec(*other, "INSERT INTO T_LOCKS VALUES (3, 0)"), OCI_SUCCESS);
}

TEST_P(Locks, ReadersWaitForNobodyAndSeeWhatWasCommitted) {
  MustExec(client, Set(1, 5));
  MustExec(client, "DELETE FROM T_LOCKS WHERE ID = 2");
  MustExec(client, "INSERT INTO T_LOCKS VALUES (3, 0)");
  EXPECT_EQ(Rows(*other, "SELECT ID, N FROM T_LOCKS ORDER BY ID"),
            (std::vector<std::vector<std::string>>{{"1", "0"}, {"2", "0"}}));
  client.Commit();
  EXPECT_EQ(Rows(*other, "SELECT ID, N FROM T_LOCKS ORDER BY ID"),
            (std::vector<std::vector<std::string>>{{"1", "5"}, {"3", "0"}}));
}

TEST_P(Locks, ATransactionReadsAnewWithEachStatement) {
  MustExec(*other, Set(2, 9));  // a transaction with work of its own
  EXPECT_EQ(N(*other, 1), "0");
  MustExec(client, Set(1, 5), OCI_COMMIT_ON_SUCCESS);
  EXPECT_EQ(N(*other, 1), "5");
}

TEST_P(Locks, AResultIsOfTheMomentItWasExecuted) {
  Statement query(client, "SELECT N FROM T_LOCKS ORDER BY ID");
  sb4 n = -1;
  query.Define(1, &n, 4, SQLT_INT);
  ASSERT_EQ(query.Execute(1), OCI_SUCCESS);
  EXPECT_EQ(n, 0);
  MustExec(*other, Set(2, 9), OCI_COMMIT_ON_SUCCESS);
  ASSERT_EQ(query.Fetch(), OCI_SUCCESS);
  EXPECT_EQ(n, 0) << "Oracle gives the rows of the snapshot, too";
}

TEST_P(Locks, ADeadlockIsToldToExactlyOneAndTheOtherGoesOn) {
  MustExec(client, Set(1, 5));
  MustExec(*other, Set(2, 7));
  auto crossing = std::async(std::launch::async, [&] { return Exec(*other, Set(1, 8)); });
  const sword mine = Exec(client, Set(2, 6));
  const int my_code = client.Code();
  if (mine != OCI_SUCCESS) client.Rollback();
  const sword theirs = crossing.get();
  EXPECT_NE(mine == OCI_SUCCESS, theirs == OCI_SUCCESS);
  EXPECT_EQ(mine == OCI_SUCCESS ? other->Code() : my_code, 60);
  Client& victim = mine == OCI_SUCCESS ? *other : client;
  Client& survivor = mine == OCI_SUCCESS ? client : *other;
  EXPECT_EQ(survivor.Commit(), OCI_SUCCESS);
  EXPECT_EQ(Exec(victim, "INSERT INTO T_LOCKS VALUES (3, 3)", OCI_COMMIT_ON_SUCCESS), OCI_SUCCESS)
      << victim.LastReport().text;
  EXPECT_EQ(N(*watcher, 3), "3");
}

// The server ends the victim's transaction; Oracle would keep what the statements before had done.
TEST_P(Locks, ADeadlockTakesTheVictimsEarlierWork) {
  MustExec(client, Set(1, 5));
  MustExec(*other, Set(2, 7));
  GiveMoreWorkToTheOther();
  WaitingCall waiting(*other, *watcher, Set(1, 8));
  ASSERT_EQ(Exec(client, Set(2, 6)), OCI_ERROR) << "the one with less work is the victim";
  EXPECT_EQ(client.LastReport().text, "ORA-00060: deadlock detected while waiting for resource\n");
  EXPECT_EQ(waiting.Status(), OCI_SUCCESS);
  other->Commit();
  client.Commit();
  EXPECT_EQ(N(*watcher, 1), "8");
}

TEST_P(Locks, ADeadlockInAnArrayEndsTheArray) {
  MustExec(client, Set(1, 5));
  MustExec(*other, Set(2, 7));
  GiveMoreWorkToTheOther();
  WaitingCall waiting(*other, *watcher, Set(1, 8));
  Statement insert(client, "INSERT INTO T_LOCKS VALUES (:1, 0)");
  double ids[] = {100, 101, 11, 103};  // 11 is the other's
  insert.Bind(1, ids, 8, SQLT_FLT);
  EXPECT_EQ(insert.Execute(4, OCI_BATCH_ERRORS), OCI_ERROR);
  EXPECT_EQ(client.Code(), 60);
  EXPECT_EQ(insert.RowCount(), 0u);
  EXPECT_EQ(waiting.Status(), OCI_SUCCESS);
  other->Rollback();
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_LOCKS"), "2");
}

TEST_P(Locks, AnInsertWaitsForAKeyThatMayBeTaken) {
  MustExec(client, "INSERT INTO T_LOCKS VALUES (3, 0)");
  WaitingCall insert(*other, *watcher, "INSERT INTO T_LOCKS VALUES (3, 1)");
  client.Commit();
  EXPECT_EQ(insert.Status(), OCI_ERROR);
  EXPECT_EQ(other->Code(), 1);
}

TEST_P(Locks, ALockWaitEndsByABreakAndEarlierWorkStays) {
  MustExec(client, Set(1, 5));
  MustExec(*other, "INSERT INTO T_LOCKS VALUES (3, 3)");
  WaitingCall update(*other, *watcher, Set(1, 8));
  EXPECT_EQ(OCIBreak(other->service, client.error), OCI_SUCCESS);
  EXPECT_EQ(update.Status(), OCI_ERROR);
  EXPECT_EQ(other->LastReport().text, "ORA-01013: user requested cancel of current operation\n");
  EXPECT_EQ(other->Commit(), OCI_SUCCESS);
  EXPECT_EQ(N(*watcher, 3), "3");
  EXPECT_EQ(N(*watcher, 1), "0");
}

TEST_P(Locks, NowaitIsToldAtOnce) {
  MustExec(client, Set(1, 5));
  EXPECT_EQ(Exec(*other, "SELECT N FROM T_LOCKS WHERE ID = 1 FOR UPDATE NOWAIT"), OCI_ERROR);
  EXPECT_EQ(other->Code(), 54);
  EXPECT_EQ(Exec(*other, "SELECT N FROM T_LOCKS WHERE ID = 2 FOR UPDATE NOWAIT"), OCI_SUCCESS);
}

TEST_P(Locks, SkipLockedLeavesTheRowOut) {
  MustExec(client, Set(1, 5));
  EXPECT_EQ(Value(*other, "SELECT ID FROM T_LOCKS FOR UPDATE SKIP LOCKED"), "2");
}

}  // namespace
}  // namespace oci_test
