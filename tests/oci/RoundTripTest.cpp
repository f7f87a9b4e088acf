// SPDX-License-Identifier: Apache-2.0
// What each call costs in round trips. A stray one would be part of everything that is measured.
#include <gtest/gtest.h>

#include <numeric>

#include "Contract.h"
#include "CountingProxy.h"

namespace oci_test {
namespace {

class RoundTrips : public testing::Test {
 protected:
  RoundTrips() : proxy(TheServer().Local().SocketPath()) {
    const auto& server = TheServer().Local();
    client.Connect("mariadb:///" + TheServer().Schema() + "?socket=" + proxy.SocketPath(), server.User(),
                   server.Password());
    Exec(client, "DROP TABLE T_TRIPS");
    MustExec(
        client,
        "CREATE TABLE T_TRIPS (ID NUMBER NOT NULL, D DATE, S VARCHAR2(20), N NUMBER(7,2), PRIMARY KEY(ID))");
    Exec(client, "DROP SEQUENCE S_TRIPS");
    MustExec(client, "CREATE SEQUENCE S_TRIPS START WITH 1001 CACHE 100");
  }

  template <class Call>
  int Of(Call&& call) {
    const int before = proxy.RoundTrips();
    EXPECT_EQ(call(), OCI_SUCCESS) << client.LastReport().text;
    return proxy.RoundTrips() - before;
  }

  sword Describe() {
    Statement statement(client, "SELECT * FROM T_TRIPS");
    return statement.Execute(0, OCI_DESCRIBE_ONLY);
  }

  CountingProxy proxy;
  Client client;
};

TEST_F(RoundTrips, ASessionIsSetUpInOne) {
  CountingProxy fresh(TheServer().Local().SocketPath());
  {
    Client other;
    const auto& server = TheServer().Local();
    other.Connect("mariadb:///" + TheServer().Schema() + "?socket=" + fresh.SocketPath(), server.User(),
                  server.Password());
    EXPECT_LE(fresh.RoundTrips(), 2) << "log-in and set-up (the greeting needs no request)";
  }
}

TEST_F(RoundTrips, OfADescribe) {
  Describe();
  EXPECT_EQ(Of([&] { return Describe(); }), 1);
}

TEST_F(RoundTrips, OfAFirstDescribeWithTheDeclaredTypes) {
  EXPECT_EQ(Of([&] { return Describe(); }), 2);
}

TEST_F(RoundTrips, OfADescribeWithinWork) {
  Describe();
  MustExec(client, "INSERT INTO T_TRIPS (ID) VALUES (1)");
  EXPECT_EQ(Of([&] { return Describe(); }), 1);
}

TEST_F(RoundTrips, OfASequenceValueEachTime) {
  Statement next(client, "SELECT S_TRIPS.NEXTVAL FROM DUAL");
  double value = 0;
  next.Define(1, &value, 8, SQLT_FLT);
  for (int i = 0; i < 3; ++i) EXPECT_EQ(Of([&] { return next.Execute(); }), 1);
  EXPECT_EQ(value, 1003);
}

TEST_F(RoundTrips, OfAnInsertPreparedForOneRow) {
  double id = 1;
  EXPECT_EQ(Of([&] {
              Statement insert(client, "INSERT INTO T_TRIPS (ID) VALUES (:ID)");
              insert.Bind(1, &id, 8, SQLT_FLT);
              return insert.Execute();
            }),
            1);
}

TEST_F(RoundTrips, OfAnArrayInsertAndItsCommit) {
  std::vector<double> ids(500);
  std::iota(ids.begin(), ids.end(), 1);
  Statement insert(client, "INSERT INTO T_TRIPS (ID) VALUES (:ID)");
  insert.Bind(1, ids.data(), 8, SQLT_FLT);
  EXPECT_EQ(Of([&] { return insert.Execute(500); }), 1);
  for (double& id : ids) id += 500;
  EXPECT_EQ(Of([&] { return insert.Execute(500, OCI_COMMIT_ON_SUCCESS); }), 2);
}

TEST_F(RoundTrips, OfALiteralUpdateAndDelete) {
  MustExec(client, "INSERT INTO T_TRIPS (ID) VALUES (42)");
  EXPECT_EQ(Of([&] { return Exec(client, "update T_TRIPS set ID=42,S='AbCdE',N=12.500000 where id = 42"); }),
            1);
  EXPECT_EQ(Of([&] { return Exec(client, "delete from T_TRIPS where id = 42"); }), 1);
}

TEST_F(RoundTrips, OfADdlAskedToCommit) {
  EXPECT_EQ(Of([&] { return Exec(client, "TRUNCATE TABLE T_TRIPS", OCI_COMMIT_ON_SUCCESS); }), 1);
}

TEST_F(RoundTrips, OfABlockAloneAndWithinWork) {
  EXPECT_EQ(Of([&] { return Exec(client, "BEGIN INSERT INTO T_TRIPS (ID) VALUES (1); END;"); }), 1);
  EXPECT_EQ(Of([&] { return Exec(client, "BEGIN INSERT INTO T_TRIPS (ID) VALUES (2); END;"); }), 2);
}

TEST_F(RoundTrips, OfAQueryOnATableAndWithinWork) {
  const auto query = [&] { return Exec(client, "SELECT ID FROM T_TRIPS"); };
  query();  // the declared types are known from here on
  EXPECT_EQ(Of(query), 2) << "with the commit that releases the table";
  MustExec(client, "INSERT INTO T_TRIPS (ID) VALUES (1)");
  EXPECT_EQ(Of(query), 1);
}

TEST_F(RoundTrips, OfAPreparedQueryAreOneMoreOnceItsTableHasGainedOrLostAColumn) {
  Statement query(client, "SELECT * FROM T_TRIPS");
  const auto run = [&] { return query.Execute(0); };
  run();
  EXPECT_EQ(Of(run), 2) << "with the commit that releases the table";
  for (const char* change : {"ADD (X NUMBER(3))", "DROP COLUMN X"}) {
    MustExec(client, std::string("ALTER TABLE T_TRIPS ") + change);
    Describe();  // the declared types are known anew from here on
    EXPECT_EQ(Of(run), 3) << change;
    EXPECT_EQ(Of(run), 2) << change;
  }
}

TEST_F(RoundTrips, OfFetchesIsNone) {
  Statement query(client, "SELECT 1 FROM DUAL");
  sb4 value = 0;
  query.Define(1, &value, 4, SQLT_INT);
  query.Execute(0);
  EXPECT_EQ(Of([&] { return query.Fetch(); }), 0);
}

TEST_F(RoundTrips, OfAnArrayOfMoreThanEightMegabytesAreOneForEachEight) {
  Exec(client, "DROP TABLE T_TRIPS_LONG");
  MustExec(client, "CREATE TABLE T_TRIPS_LONG (S CLOB)");
  constexpr sb4 kSize = 3 << 20;  // two of them fit
  std::vector<char> values(std::size_t{4} * kSize, 'x');
  Statement insert(client, "INSERT INTO T_TRIPS_LONG (S) VALUES (:S)");
  insert.Bind(1, values.data(), kSize, SQLT_CHR);
  // Prepared before: the answer to a prepare that travels with so much crosses what is still being sent.
  EXPECT_EQ(insert.Execute(1), OCI_SUCCESS);
  EXPECT_EQ(Of([&] { return insert.Execute(4); }), 2);
}

TEST_F(RoundTrips, OfATextAboveEightMegabytesAreTwoTheFirstTime) {
  const std::string text = "SELECT '" + std::string((8 << 20) + 1, 'x') + "' FROM DUAL";
  const auto query = [&] { return Exec(client, text); };
  EXPECT_EQ(Of(query), 2);
  EXPECT_EQ(Of(query), 1);
}

TEST_F(RoundTrips, OfAPing) {
  EXPECT_EQ(Of([&] { return OCIPing(client.service, client.error, OCI_DEFAULT); }), 1);
}

// The workload's transactions, as the plug-in makes them and the host commits them.
TEST_F(RoundTrips, OfAnInsertTransactionAreFour) {
  Statement next(client, "SELECT S_TRIPS.NEXTVAL FROM DUAL");
  double id = 0;
  next.Define(1, &id, 8, SQLT_FLT);
  Describe();
  EXPECT_EQ(Of([&] {
              Describe();
              Statement insert(client, "INSERT INTO T_TRIPS (ID) VALUES (:ID)");
              insert.Bind(1, &id, 8, SQLT_FLT);
              next.Execute();
              EXPECT_EQ(insert.Execute(), OCI_SUCCESS);
              return client.Commit();
            }),
            4);
}

TEST_F(RoundTrips, OfAnUpdateTransactionAreThree) {
  Describe();
  double id = 1;
  EXPECT_EQ(Of([&] {
              Describe();
              Statement unused(client, "INSERT INTO T_TRIPS (ID) VALUES (:ID)");
              unused.Bind(1, &id, 8, SQLT_FLT);
              EXPECT_EQ(Exec(client, "update T_TRIPS set ID=1,S='AbCdE' where id = 1"), OCI_SUCCESS);
              return client.Commit();
            }),
            3);
}

TEST_F(RoundTrips, OfADeleteTransactionAreTwo) {
  EXPECT_EQ(Of([&] {
              EXPECT_EQ(Exec(client, "delete from T_TRIPS where id = 1"), OCI_SUCCESS);
              return client.Commit();
            }),
            2);
}

TEST_F(RoundTrips, OfCommitAndRollback) {
  EXPECT_EQ(Of([&] { return client.Commit(); }), 1);
  EXPECT_EQ(Of([&] { return client.Rollback(); }), 1);
}

TEST_F(RoundTrips, OfPreparingBindingAttributesAndFreeingIsNone) {
  double id = 1;
  EXPECT_EQ(Of([&] {
              Statement statement(client, "INSERT INTO T_TRIPS (ID) VALUES (:ID)");
              statement.Bind(1, &id, 8, SQLT_FLT);
              EXPECT_EQ(statement.Attribute<ub2>(OCI_ATTR_STMT_TYPE), OCI_STMT_INSERT);
              return OCI_SUCCESS;
            }),
            0);
}

}  // namespace
}  // namespace oci_test
