// SPDX-License-Identifier: Apache-2.0
#include "db/SSBenchmark.h"

#include <gtest/gtest.h>

#include <memory>

#include "db/Xact.h"

namespace {

int g_destroyed = 0;

class CountedXact : public CXact {
  wxDECLARE_DYNAMIC_CLASS(CountedXact);

 public:
  ~CountedXact() override { ++g_destroyed; }
};
wxIMPLEMENT_DYNAMIC_CLASS(CountedXact, CXact);

class UncreatableXact : public CXact {
  wxDECLARE_ABSTRACT_CLASS(UncreatableXact);
};
wxIMPLEMENT_ABSTRACT_CLASS(UncreatableXact, CXact);

TEST(Benchmark, KeepsItsIdentityAndScale) {
  CSSBenchmark benchmark;
  EXPECT_EQ(benchmark.GetBenchmarkScale(), 1.0);
  benchmark.SetName(L"Replication");
  benchmark.SetBenchmarkID(12);
  benchmark.SetDriverID(3);
  benchmark.SetBenchmarkScale(2.5);
  EXPECT_EQ(benchmark.GetName(), LKString(L"Replication"));
  EXPECT_EQ(benchmark.GetBenchmarkID(), 12);
  EXPECT_EQ(benchmark.GetDriverID(), 3);
  EXPECT_EQ(benchmark.GetBenchmarkScale(), 2.5);
}

TEST(Benchmark, IsMadeByItsClassName) {
  const std::unique_ptr<wxObject> pObject(wxCreateDynamicObject("CSSBenchmark"));
  EXPECT_NE(dynamic_cast<CSSBenchmark*>(pObject.get()), nullptr);
}

TEST(Benchmark, OfTheBaseClassRegistersNothingAndHasNoPages) {
  CSSBenchmark benchmark;
  CTRKPtrArray pages;
  EXPECT_EQ(benchmark.RegisterTransactions(1), 1);
  EXPECT_EQ(benchmark.GetXactCount(), 0);
  EXPECT_EQ(benchmark.GetPropertyPages(&pages, 0), 0);
  EXPECT_TRUE(pages.IsEmpty());
}

TEST(Benchmark, ListsTransactionsInTheOrderOfTheirAdding) {
  CSSBenchmark benchmark;
  for (const int id : {30, 10, 20}) {
    benchmark.AddXact(new CXact);
    benchmark.GetXact(benchmark.GetXactCount() - 1)->SetXactID(id);
  }
  ASSERT_EQ(benchmark.GetXactCount(), 3);
  EXPECT_EQ(benchmark.GetXact(0)->GetXactID(), 30);
  EXPECT_EQ(benchmark.GetXact(1)->GetXactID(), 10);
  EXPECT_EQ(benchmark.GetXact(2)->GetXactID(), 20);
  EXPECT_EQ(benchmark.GetXact(-1), nullptr);
  EXPECT_EQ(benchmark.GetXact(3), nullptr);
}

TEST(Benchmark, DeletesItsTransactionsThroughTheirOwnDestructors) {
  g_destroyed = 0;
  {
    CSSBenchmark benchmark;
    benchmark.AddXact(new CountedXact);
    benchmark.AddXact(new CountedXact);
    EXPECT_EQ(g_destroyed, 0);
  }
  EXPECT_EQ(g_destroyed, 2);
}

TEST(NewXact, IsOfTheRegisteredClassWithItsIdentityAndUnbound) {
  CSSBenchmark benchmark;
  auto* registered = new CountedXact;
  registered->SetXactID(201);
  registered->SetName(L"Count");
  registered->SetDescription(L"counted");
  registered->SetTransactionType(LOAD_TABLE);
  registered->SetBenchmark(&benchmark);
  registered->SetUserID(7);
  benchmark.AddXact(registered);
  const std::unique_ptr<CXact> copy(benchmark.GetNewXactByID(201));
  ASSERT_NE(copy, nullptr);
  EXPECT_NE(copy.get(), registered);
  EXPECT_TRUE(copy->IsKindOf(CLASSINFO(CountedXact)));
  EXPECT_EQ(copy->GetXactID(), 201);
  EXPECT_EQ(copy->GetName(), LKString(L"Count"));
  EXPECT_EQ(copy->GetDescription(), LKString(L"counted"));
  EXPECT_EQ(copy->GetTransactionType(), LOAD_TABLE);
  EXPECT_EQ(copy->GetBenchmark(), nullptr);
  EXPECT_EQ(copy->GetUserID(), 0);
}

TEST(NewXact, IsNullForAnUnknownIdAndForAClassThatCannotBeCreated) {
  CSSBenchmark benchmark;
  benchmark.AddXact(new UncreatableXact);
  EXPECT_EQ(benchmark.GetNewXactByID(99), nullptr);
  EXPECT_EQ(benchmark.GetNewXactByID(0), nullptr);
}

}  // namespace
