// SPDX-License-Identifier: Apache-2.0
// A session from its refusal to its loss: what is told, and what can be done with the handles afterwards.
#include <gmock/gmock.h>

#include <map>
#include <thread>

#include "Contract.h"
#include "Waiting.h"

namespace oci_test {
namespace {

class ConnectionLife : public Contract {
 protected:
  ConnectionLife() : other(Another()) {}

  static Address TheAddress() { return AddressOf(GetParam()); }

  // The error of a session of these.
  static Report Fail(const std::string& connect_string, const std::string& user,
                     const std::string& password) {
    Client tried;
    if (tried.Attach(connect_string) != OCI_SUCCESS) return tried.LastReport();
    return tried.Begin(user, password) == OCI_SUCCESS ? Report{} : tried.LastReport();
  }
  static std::string WithSchema(const std::string& schema) {
    std::string text = TheAddress().connect_string;
    return text.replace(text.rfind("/lkbench") + 1, 7, schema);
  }
  // Ends the client's connection on the server's side.
  void Kill() { MustExec(*other, "KILL CONNECTION " + Value(client, "SELECT CONNECTION_ID() FROM DUAL")); }
  sword BeginAgain() { return client.Begin(TheAddress().user, TheAddress().password); }

  const std::unique_ptr<Client> other;
};
INSTANTIATE_TEST_SUITE_P(Over, ConnectionLife, testing::Values(Transport::kSocket, Transport::kTls),
                         TransportName);

constexpr char kLongUser[] =
    "a_user_name_that_is_far_longer_than_the_eighty_characters_which_the_server_allows_for_one";

TEST_P(ConnectionLife, AnUnknownUserOrAWrongPasswordIsRefused) {
  const Address address = TheAddress();
  EXPECT_EQ(Fail(address.connect_string, "nobody", "x").code, 1017);
  EXPECT_EQ(Fail(address.connect_string, kLongUser, "x").code, 1017);
  if (GetParam() == Transport::kTls) {  // the account of the socket has no password
    EXPECT_EQ(Fail(address.connect_string, address.user, "wrong").code, 1017);
    EXPECT_EQ(Fail(address.connect_string, address.user, "").code, 1017);
    EXPECT_EQ(Fail(address.connect_string, address.user, std::string(5000, 'x')).code, 1017);
  }
}

TEST_P(ConnectionLife, AnUnknownSchemaIsRefused) {
  const Address address = TheAddress();
  EXPECT_THAT(Fail(WithSchema("no_such_schema"), address.user, address.password).code,
              testing::AnyOf(12514, 1031));
}

TEST_P(ConnectionLife, ARefusedSessionMayBeginAnew) {
  const Address address = TheAddress();
  Client tried;
  ASSERT_EQ(tried.Attach(address.connect_string), OCI_SUCCESS);
  EXPECT_EQ(tried.Begin("nobody", "wrong"), OCI_ERROR);
  EXPECT_EQ(tried.Begin(address.user, address.password), OCI_SUCCESS) << tried.LastReport().text;
  EXPECT_EQ(Value(tried, "SELECT 1 FROM DUAL"), "1");
}

TEST_P(ConnectionLife, AServerThatGoesInTheMiddleOfACallIsTold) {
  WaitingCall sleep(client, *other, "SELECT SLEEP(60) FROM DUAL");
  MustExec(
      *other,
      "KILL CONNECTION " +
          Value(*other, "SELECT ID FROM INFORMATION_SCHEMA.PROCESSLIST WHERE INFO LIKE 'SELECT SLEEP%'"));
  EXPECT_EQ(sleep.Status(), OCI_ERROR);
  EXPECT_THAT(client.Code(), testing::AnyOf(3113, 28)) << client.LastReport().text;
  EXPECT_EQ(client.ServerStatus(), 0u);
}

TEST_P(ConnectionLife, EachKindOfCallTellsTheLoss) {
  Table("T_LOSS", "ID NUMBER");
  const auto lose_in = [&](auto&& call) {
    const auto session = Another();
    Client& victim = *session;
    MustExec(victim, "INSERT INTO T_LOSS VALUES (1)");
    const std::string id = Value(victim, "SELECT CONNECTION_ID() FROM DUAL");
    MustExec(client, "KILL CONNECTION " + id);
    EXPECT_EQ(call(victim), OCI_ERROR);
    return victim.Code();
  };
  const auto gone = testing::AnyOf(3113, 28);
  EXPECT_THAT(lose_in([](Client& c) { return Exec(c, "UPDATE T_LOSS SET ID = 2"); }), gone);
  EXPECT_THAT(lose_in([](Client& c) { return Exec(c, "SELECT * FROM T_LOSS"); }), gone);
  EXPECT_THAT(lose_in([](Client& c) { return Exec(c, "BEGIN INSERT INTO T_LOSS VALUES (1); END;"); }), gone);
  EXPECT_THAT(lose_in([](Client& c) { return c.Commit(); }), gone);
  EXPECT_THAT(lose_in([](Client& c) { return c.Rollback(); }), gone);
  EXPECT_THAT(lose_in([](Client& c) { return OCIPing(c.service, c.error, OCI_DEFAULT); }), gone);
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_LOSS"), "0") << "the lost sessions were rolled back";
}

TEST_P(ConnectionLife, ALostSessionAnswersEveryCallAndNeverComesBackByItself) {
  Statement query(client, "SELECT 1 FROM DUAL");
  sb4 value = 0;
  query.Define(1, &value, 4, SQLT_INT);
  ASSERT_EQ(query.Execute(), OCI_SUCCESS);
  Kill();
  EXPECT_EQ(query.Execute(), OCI_ERROR);
  EXPECT_THAT(client.Code(), testing::AnyOf(3113, 28));
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(query.Execute(), OCI_ERROR);
    EXPECT_EQ(client.LastReport().text, "ORA-03114: not connected to ORACLE\n");
    EXPECT_EQ(client.Rollback(), OCI_ERROR);
    EXPECT_EQ(client.Code(), 3114);
    EXPECT_EQ(OCIPing(client.service, client.error, OCI_DEFAULT), OCI_ERROR);
    EXPECT_EQ(client.Code(), 3114);
  }
  EXPECT_EQ(OCIBreak(client.service, client.error), OCI_SUCCESS);
}

TEST_P(ConnectionLife, ALostSessionIsEndedAndBeginsAnewWithItsStatements) {
  Table("T_LIFE", "ID NUMBER");
  Statement insert(client, "INSERT INTO T_LIFE VALUES (:1)");
  double id = 1;
  insert.Bind(1, &id, 8, SQLT_FLT);
  ASSERT_EQ(insert.Execute(), OCI_SUCCESS);
  Kill();
  EXPECT_EQ(insert.Execute(), OCI_ERROR);
  EXPECT_EQ(client.End(), OCI_SUCCESS) << client.LastReport().text;
  ASSERT_EQ(BeginAgain(), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(insert.Execute(1, OCI_COMMIT_ON_SUCCESS), OCI_SUCCESS) << client.LastReport().text;
  EXPECT_EQ(Value(*other, "SELECT COUNT(*) FROM T_LIFE"), "1") << "the first one went with its session";
}

TEST_P(ConnectionLife, RowsThatWereFetchedAlreadyOutliveTheSession) {
  Statement query(client, "SELECT 1 FROM DUAL UNION ALL SELECT 2 FROM DUAL");
  sb4 value = 0;
  query.Define(1, &value, 4, SQLT_INT);
  ASSERT_EQ(query.Execute(1), OCI_SUCCESS);
  Kill();
  EXPECT_EQ(query.Fetch(), OCI_SUCCESS) << "the result is whole";
  EXPECT_EQ(value, 2);
  EXPECT_EQ(query.Fetch(), OCI_NO_DATA);
}

TEST_P(ConnectionLife, TwoEnvironmentsShareNothing) {
  Table("T_LIFE", "ID NUMBER");
  {
    const auto second = Another();  // each client has an environment of its own
    MustExec(*second, "INSERT INTO T_LIFE VALUES (1)");
    void* statement = nullptr;
    ASSERT_EQ(OCIHandleAlloc(second->env, &statement, OCI_HTYPE_STMT, 0, nullptr), OCI_SUCCESS);
    OCIHandleFree(second->env, OCI_HTYPE_ENV);
    EXPECT_EQ(OCIHandleFree(statement, OCI_HTYPE_STMT), OCI_INVALID_HANDLE);
  }
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_LIFE"), "0") << "a session that is freed is rolled back";
}

TEST_P(ConnectionLife, AStatementOfOneEnvironmentRunsOnTheSessionOfAnother) {
  Statement query(client, "SELECT CONNECTION_ID() FROM DUAL");
  sb8 mine = 0;
  query.Define(1, &mine, 8, SQLT_INT);
  ASSERT_EQ(query.Execute(), OCI_SUCCESS);
  sb8 theirs = mine;
  query.Define(1, &theirs, 8, SQLT_INT);
  ASSERT_EQ(OCIStmtExecute(other->service, query.handle, client.error, 1, 0, nullptr, nullptr, OCI_DEFAULT),
            OCI_SUCCESS)
      << client.LastReport().text;
  EXPECT_NE(theirs, mine);
}

TEST_P(ConnectionLife, HandlesFreedInAnyOrderDoNoHarm) {
  for (const ub4 first : {OCI_HTYPE_SERVER, OCI_HTYPE_SESSION, OCI_HTYPE_SVCCTX, OCI_HTYPE_ERROR}) {
    const auto victim = Another();
    Statement query(*victim, "SELECT 1 FROM DUAL");
    sb4 value = 0;
    query.Define(1, &value, 4, SQLT_INT);
    ASSERT_EQ(query.Execute(0), OCI_SUCCESS);
    const std::map<ub4, void*> handles{{OCI_HTYPE_SERVER, victim->server},
                                       {OCI_HTYPE_SESSION, victim->session},
                                       {OCI_HTYPE_SVCCTX, victim->service},
                                       {OCI_HTYPE_ERROR, victim->error}};
    EXPECT_EQ(OCIHandleFree(handles.at(first), first), OCI_SUCCESS);
    query.Fetch();
    query.Execute(0);
    victim->Commit();
    OCIBreak(victim->service, client.error);
  }
}

TEST_P(ConnectionLife, DetachingLeavesASessionThatRunsAlone) {
  EXPECT_EQ(OCIServerDetach(client.server, client.error, OCI_DEFAULT), OCI_SUCCESS);
  EXPECT_EQ(Value(client, "SELECT 1 FROM DUAL"), "1");
  EXPECT_EQ(client.Begin("a", "b"), OCI_ERROR);
}

TEST_P(ConnectionLife, ThreadsWithSessionsOfTheirOwnComeAndGo) {
  Table("T_LIFE", "ID NUMBER");
  constexpr int kThreads = 4, kRounds = 5;
  std::vector<std::thread> threads;
  std::vector<std::string> problems(kThreads);
  for (int i = 0; i < kThreads; ++i)
    threads.emplace_back([&, i] {
      try {
        for (int round = 0; round < kRounds; ++round)
          MustExec(*Another(), "INSERT INTO T_LIFE VALUES (1)", OCI_COMMIT_ON_SUCCESS);
      } catch (const std::exception& problem) {
        problems[i] = problem.what();
      }
    });
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(problems, std::vector<std::string>(kThreads));
  EXPECT_EQ(Value(client, "SELECT COUNT(*) FROM T_LIFE"), std::to_string(kThreads * kRounds));
}

}  // namespace
}  // namespace oci_test
