// SPDX-License-Identifier: Apache-2.0
#include "db/Xact.h"

#include <gtest/gtest.h>

#include <memory>

#include "ForeignDriver.h"

namespace {

class UserXact : public CXact {
 public:
  int IsUserXact() override { return 1; }
};

class CountingXact : public CXact {
 public:
  int Execute() override {
    ++executed;
    return result;
  }
  int executed = 0;
  int result = 1;
};

class XactOfDriver9 : public CXact {
 public:
  XactOfDriver9() { m_nDriverType = 9; }
};

class SearchableXact : public CXact {
 public:
  int CanSearchReplace() override { return 1; }
  int GlobalSearchReplace(LKString&, LKString&, int, int) override { return 3; }
};

TEST(Xact, CanBeMadeByItsClassName) {
  const std::unique_ptr<wxObject> object(wxCreateDynamicObject(wxT("CXact")));
  EXPECT_NE(dynamic_cast<CXact*>(object.get()), nullptr);
}

TEST(Xact, AnswersPostAndDeleteWith405) {
  CXact xact;
  LKString response;
  EXPECT_EQ(xact.DoPost(Context(), response), 405);
  EXPECT_EQ(xact.DoDelete(Context(), response), 405);
}

TEST(Xact, YieldsNoSqlUnlessItOverridesTheOperation) {
  CXact xact;
  EXPECT_TRUE(xact.GetExecuteSQL().IsEmpty());
  EXPECT_EQ(xact.GetExecuteSQL().GetLength(), 0);
}

TEST(Xact, HasTheDefaultsThatEveryTransactionInherits) {
  CXact xact;
  EXPECT_EQ(xact.IsValid(), 1);
  EXPECT_EQ(xact.Apply(), 1);
  EXPECT_EQ(xact.CanSearchReplace(), 0);
  EXPECT_EQ(xact.IsUserXact(), 0);
  EXPECT_EQ(xact.IsInUserXact(), 0);
  EXPECT_EQ(xact.GetXactCount(), 0);
  EXPECT_TRUE(xact.GetFileName().IsEmpty());
  EXPECT_EQ(xact.ConvertToSQLStatement(), 0);
  EXPECT_TRUE(xact.GetPreparedSQLName().IsEmpty());
  xact.SetFreeAfterExecute(1);
  EXPECT_EQ(xact.IsFreeAfterExecute(), 0);
  EXPECT_TRUE(xact.GetScript().IsEmpty());
  EXPECT_EQ(xact.GetDriverType(), 0);
  EXPECT_EQ(xact.GetTransactionType(), UNKNOWN);
}

TEST(Xact, AnswersWithItsDriverType) { EXPECT_EQ(XactOfDriver9().GetDriverType(), 9); }

TEST(Xact, PassesThroughItsLifecycleWithoutADriver) {
  CXact xact;
  EXPECT_EQ(xact.PreBenchmark(), 1);
  EXPECT_EQ(xact.PreIteration(), 1);
  EXPECT_EQ(xact.PreExecute(), 1);
  EXPECT_EQ(xact.Execute(), 1);
  EXPECT_EQ(xact.PostExecute(), 1);
  EXPECT_EQ(xact.PostIteration(), 1);
  EXPECT_EQ(xact.PostBenchmark(), 1);
}

TEST(Xact, IsBoundToTheDriverItIsGivenUntilAnotherIsGiven) {
  scripted::ForeignDriver driver;
  CXact xact;
  EXPECT_EQ(xact.GetDriver(), nullptr);
  xact.SetDriver(&driver);
  EXPECT_EQ(xact.GetDriver(), &driver);
  xact.SetDriver(nullptr);
  EXPECT_EQ(xact.GetDriver(), nullptr);
}

TEST(Xact, NumbersItsTypesAsTheContractDoes) {
  EXPECT_EQ(UNKNOWN, 0);
  EXPECT_EQ(QUERY, 1);
  EXPECT_EQ(randomQUERY, 2);
  EXPECT_EQ(inputQUERY, 3);
  EXPECT_EQ(TRANSACTION, 4);
  EXPECT_EQ(randomTRANSACTION, 5);
  EXPECT_EQ(inputTRANSACTION, 6);
  EXPECT_EQ(LOAD_TABLE, 7);
  EXPECT_EQ(CREATE_TABLE, 8);
  EXPECT_EQ(DROP_TABLE, 9);
  EXPECT_EQ(CREATE_INDEX, 10);
  EXPECT_EQ(DROP_INDEX, 11);
  EXPECT_EQ(CREATE_SP, 12);
  EXPECT_EQ(DROP_SP, 13);
  EXPECT_EQ(CREATE_VIEW, 14);
  EXPECT_EQ(DROP_VIEW, 15);
  EXPECT_EQ(EXT_FUNCTION, 16);
}

TEST(Xact, DescribesItselfByNameIdTypeAndDescription) {
  CXact xact;
  xact.SetName(L"Drop Sequence");
  xact.SetXactID(171);
  xact.SetTransactionType(DROP_SP);
  EXPECT_EQ(xact.GetDetailInformation(), LKString(L"Drop Sequence (transaction 171, type 13)"));
  xact.SetDescription(L"drops it");
  EXPECT_EQ(xact.GetDetailInformation(), LKString(L"Drop Sequence (transaction 171, type 13): drops it"));
}

TEST(XactCancel, IsSeenOnceItWasRequested) {
  CXact xact;
  EXPECT_EQ(xact.CancelXact(), 0);
  xact.RequestCancel();
  EXPECT_NE(xact.CancelXact(), 0);
}

TEST(XactCancel, OfASharedFlagReachesEveryCopyAndLeavesTheirOwnAlone) {
  std::atomic<bool> cancelled{false};
  CXact first;
  CXact second;
  first.SetCancelFlag(&cancelled);
  second.SetCancelFlag(&cancelled);
  second.RequestCancel();
  EXPECT_NE(first.CancelXact(), 0);
  first.SetCancelFlag(nullptr);
  EXPECT_EQ(first.CancelXact(), 0);
}

TEST(XactStart, SetsUserTotalsAndARepeatableRandomStream) {
  CXact first;
  CXact second;
  first.GetRandomGenerator().GetRandom(1, 10);
  ASSERT_EQ(first.InitializeForTest(nullptr, 2, 5, 77), 1);
  ASSERT_EQ(second.InitializeForTest(nullptr, 3, 5, 77), 1);
  EXPECT_EQ(first.GetUserID(), 2);
  EXPECT_EQ(first.GetTotalUsers(), 5);
  for (int i = 0; i < 10; ++i)
    EXPECT_EQ(first.GetRandomGenerator().GetRandom(1, 1000000),
              second.GetRandomGenerator().GetRandom(1, 1000000));
}

TEST(XactStart, RefusesAUserOutsideTheTotal) {
  CXact xact;
  EXPECT_EQ(xact.InitializeForTest(nullptr, 0, 5, 1), 0);
  EXPECT_EQ(xact.InitializeForTest(nullptr, 6, 5, 1), 0);
  EXPECT_EQ(xact.GetUserID(), 0);
}

TEST(XactStart, HoldsExecutionsBackUntilTheEventIsSignalled) {
  CXact xact;
  LKEvent_ start;
  ASSERT_EQ(xact.InitializeForTest(&start, 1, 1, 1), 1);
  EXPECT_EQ(xact.PreExecute(), 0);
  start.bSignalled = true;
  EXPECT_EQ(xact.PreExecute(), 1);
}

TEST(XactChildren, AreFoundByNameAndCounted) {
  CXact parent;
  CXact child;
  child.SetName(L"child");
  parent.AddChildXact(&child);
  EXPECT_EQ(parent.GetXactCount(), 1);
  EXPECT_EQ(parent.GetXacts()[0], &child);
  EXPECT_EQ(child.GetParentXact(), &parent);
  EXPECT_EQ(parent.GetNextObject(L"child"), static_cast<CRestObject*>(&child));
  EXPECT_EQ(parent.GetNextObject(L"other"), nullptr);
}

TEST(XactChildren, AreInAUserTransactionWhenTheirParentIsOne) {
  UserXact user;
  CXact plain;
  CXact child;
  CXact other;
  user.AddChildXact(&child);
  plain.AddChildXact(&other);
  EXPECT_EQ(child.IsInUserXact(), 1);
  EXPECT_EQ(other.IsInUserXact(), 0);
}

TEST(XactChildren, AreExecutedByTheirParentAsOftenAsTheirWeightSays) {
  CXact parent;
  CountingXact often;
  CountingXact never;
  CountingXact seldom;
  often.SetWeight(3);
  never.SetWeight(0);
  seldom.SetWeight(1);
  for (CXact* child :
       {static_cast<CXact*>(&often), static_cast<CXact*>(&never), static_cast<CXact*>(&seldom)})
    parent.AddChildXact(child);
  parent.GetRandomGenerator().Seed(1);
  for (int i = 0; i < 4000; ++i) EXPECT_EQ(parent.Execute(), 1);
  EXPECT_EQ(never.executed, 0);
  EXPECT_NEAR(often.executed, 3000, 150);
  EXPECT_EQ(often.executed + seldom.executed, 4000);
}

TEST(XactChildren, HandTheirFailureToTheParent) {
  CXact parent;
  CountingXact child;
  child.result = 0;
  parent.AddChildXact(&child);
  EXPECT_EQ(parent.Execute(), 0);
}

TEST(XactChildren, WithoutAnyWeightAreNeverNext) {
  CXact parent;
  CountingXact child;
  child.SetWeight(0);
  parent.AddChildXact(&child);
  EXPECT_EQ(parent.GetNextXactToExecute(), nullptr);
  EXPECT_EQ(parent.Execute(), 1);
  EXPECT_EQ(child.executed, 0);
}

TEST(XactChildren, AreAskedForReplacementsWhenTheyAllowThem) {
  CXact parent;
  CXact plain;
  SearchableXact first;
  SearchableXact second;
  for (CXact* child : {&plain, static_cast<CXact*>(&first), static_cast<CXact*>(&second)})
    parent.AddChildXact(child);
  LKString find = L"a";
  LKString replace = L"b";
  EXPECT_EQ(parent.GlobalSearchReplace(find, replace, 1, 0), 6);
}

TEST(Xact, RemembersTheScriptEngineThatTheHostGives) {
  CXact xact;
  wxObject engine;
  EXPECT_EQ(xact.GetScriptEngine(), nullptr);
  xact.SetScriptEngine(&engine);
  EXPECT_EQ(xact.GetScriptEngine(), &engine);
}

}  // namespace
