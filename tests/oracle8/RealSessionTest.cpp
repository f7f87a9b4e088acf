// SPDX-License-Identifier: Apache-2.0
// Sessions, statements, queries and cancels on a real database.
#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "RealDatabase.h"

namespace {

using real_database::ConnectTo;
using real_database::Execute;
using real_database::Rows;
using real_database::TheServer;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class RealSession : public real_database::RealDatabase {
 protected:
  std::string Count(const std::string& table) {
    return Rows(m_driver, "SELECT COUNT(*) FROM " + table)[0][0];
  }
};

LKString Wide(const std::string& text) { return LKString(text.c_str(), static_cast<int>(text.size())); }

TEST_F(RealSession, TellsTheVersionOfTheServer) {
  EXPECT_THAT(m_driver.GetServerVersion().ToChar(), HasSubstr("Release"));
}

TEST_F(RealSession, IsRefusedWithAWrongPassword) {
  COracle8Driver driver;
  driver.AddHandler(&m_reports);
  EXPECT_EQ(driver.Connect(Wide(TheServer().ConnectString()), L"nobody", L"wrong"), 0);
  EXPECT_FALSE(driver.IsConnected());
  EXPECT_EQ(driver.GetLastErrorCode(), 1017);
  EXPECT_THAT(m_reports.Reports(), ElementsAre(AllOf(StartsWith("ERROR 1017: Cannot connect to "),
                                                     HasSubstr("as \"nobody\" (begin the session failed)"))));
}

TEST_F(RealSession, SaysWhenNoServerIsThere) {
  COracle8Driver driver;
  driver.AddHandler(&m_reports);
  EXPECT_EQ(driver.Connect(L"mariadb:///lk?socket=/nowhere/server.sock", L"u", L"p"), 0);
  EXPECT_EQ(driver.GetLastErrorCode(), 12541);
  EXPECT_EQ(m_reports.Reports().size(), 1u);
}

TEST_F(RealSession, QueriesTextsNumbersAndNulls) {
  Make("T1", "A NUMBER, B VARCHAR2(20), C NUMBER(8,2)",
       {"INSERT INTO T1 VALUES (1, 'one', 1.5)", "INSERT INTO T1 VALUES (2, NULL, NULL)"});
  EXPECT_THAT(Rows(m_driver, "SELECT A, B, C FROM T1 ORDER BY A"),
              ElementsAre(ElementsAre("1", "one", "1.5"), ElementsAre("2", "", "")));
  EXPECT_THAT(Rows(m_driver, "SELECT A FROM T1 WHERE A > 5"), IsEmpty());
}

TEST_F(RealSession, QueriesMoreRowsThanABlock) {
  Make("T1", "A NUMBER");
  ASSERT_EQ(Execute(m_driver, "BEGIN FOR i IN 1..250 LOOP INSERT INTO T1 VALUES (i); END LOOP; END;"), 0);
  const auto rows = Rows(m_driver, "SELECT A FROM T1 ORDER BY A");
  ASSERT_EQ(rows.size(), 250u);
  EXPECT_EQ(rows.back()[0], "250");
}

TEST_F(RealSession, CommitsTheGenericStatement) {
  Make("T1", "A NUMBER");
  ASSERT_EQ(m_driver.PrepareStatement(L"INSERT INTO T1 VALUES (1)", 0), 1);
  ASSERT_EQ(m_driver.ExecuteStatement(0), 1);
  ASSERT_EQ(m_driver.CloseStatement(), 1);
  ASSERT_EQ(m_driver.Rollback(), 1);
  EXPECT_EQ(Count("T1"), "1");
}

TEST_F(RealSession, ReportsAMissingSequenceUnlessItIsIgnored) {
  for (const int ignored : {0, 2289}) {
    m_reports.Clear();
    if (ignored != 0) m_driver.AddIgnoreError(ignored);
    ASSERT_EQ(m_driver.PrepareStatement(L"DROP SEQUENCE NO_SUCH_SEQ", 0), 1);
    EXPECT_EQ(m_driver.ExecuteStatement(0), 0);
    m_driver.CloseStatement();
    EXPECT_EQ(m_driver.GetLastErrorCode(), 2289);
    EXPECT_EQ(m_reports.Reports().size(), ignored == 0 ? 1u : 0u);
  }
}

TEST_F(RealSession, CommitsAndRollsBack) {
  Make("T1", "A NUMBER");
  ASSERT_EQ(Execute(m_driver, "INSERT INTO T1 VALUES (1)", OCI_DEFAULT), 0);
  EXPECT_EQ(m_driver.Commit(), 1);
  ASSERT_EQ(Execute(m_driver, "INSERT INTO T1 VALUES (2)", OCI_DEFAULT), 0);
  EXPECT_EQ(m_driver.Rollback(), 1);
  EXPECT_EQ(Count("T1"), "1");
}

TEST_F(RealSession, RollsBackWhatIsOpenWhenItEnds) {
  Make("T1", "A NUMBER");
  {
    COracle8Driver destroyed;
    ASSERT_EQ(ConnectTo(destroyed), 1);
    ASSERT_EQ(Execute(destroyed, "INSERT INTO T1 VALUES (1)", OCI_DEFAULT), 0);
  }
  COracle8Driver disconnected;
  ASSERT_EQ(ConnectTo(disconnected), 1);
  ASSERT_EQ(Execute(disconnected, "INSERT INTO T1 VALUES (2)", OCI_DEFAULT), 0);
  EXPECT_EQ(disconnected.Disconnect(), 1);
  EXPECT_EQ(Count("T1"), "0");
}

TEST_F(RealSession, ConnectsAgainAfterADisconnect) {
  EXPECT_EQ(m_driver.Disconnect(), 1);
  EXPECT_EQ(ConnectTo(m_driver), 1);
  EXPECT_EQ(Rows(m_driver, "SELECT 1 FROM DUAL")[0][0], "1");
}

TEST_F(RealSession, IsStoppedByACancelFromAnotherThreadAndUsableAfterwards) {
  Make("T1", "A NUMBER NOT NULL, PRIMARY KEY(A)", {"INSERT INTO T1 VALUES (1)"});
  COracle8Driver blocked;
  ASSERT_EQ(ConnectTo(blocked), 1);
  ASSERT_EQ(Execute(m_driver, "UPDATE T1 SET A = 2", OCI_DEFAULT), 0);
  std::atomic<bool> stopped{false};
  std::thread canceller([&] {
    while (!stopped) {
      blocked.Cancel();
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
  });
  EXPECT_EQ(Execute(blocked, "UPDATE T1 SET A = 3", OCI_DEFAULT), 1013);
  stopped = true;
  canceller.join();
  EXPECT_EQ(Rows(blocked, "SELECT 1 FROM DUAL")[0][0], "1");
  EXPECT_EQ(m_driver.Commit(), 1);
  EXPECT_EQ(Execute(blocked, "UPDATE T1 SET A = 3"), 0);
}

TEST_F(RealSession, OfEachThreadWorksOnItsOwn) {
  Make("T1", "A NUMBER NOT NULL, PRIMARY KEY(A)");
  std::vector<std::thread> users;
  std::atomic<int> failures{0};
  for (int user = 0; user < 4; ++user)
    users.emplace_back([user, &failures] {
      COracle8Driver driver;
      if (ConnectTo(driver) == 0) ++failures;
      for (int i = 0; i < 25; ++i)
        failures += Execute(driver, "INSERT INTO T1 VALUES (" + std::to_string(user * 25 + i) + ")") != 0;
    });
  for (std::thread& user : users) user.join();
  EXPECT_EQ(failures, 0);
  EXPECT_EQ(Count("T1"), "100");
}

}  // namespace
