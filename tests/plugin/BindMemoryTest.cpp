// SPDX-License-Identifier: Apache-2.0
// The memory of array binds and columns: what they allocate they give back, also after a refused allocation.
#include <gtest/gtest.h>
#include <malloc.h>

#include <memory>

#include "Benchmarks/CREP_ORA8/Bind.h"
#include "Benchmarks/CREP_ORA8/TableLoader.h"
#include "ConnectedDriver.h"
#include "DescribedTable.h"

namespace {

using scripted::ColumnOf;
using scripted::DateColumn;
using scripted::IdColumn;
using scripted::NumberColumn;
using scripted::TextColumn;

class BindMemory : public scripted::ConnectedDriver<> {};

// Bytes that the process's heap has given out. Stays 0 under the address sanitizer, which finds leaks itself.
size_t HeapInUse() { return mallinfo2().uordblks; }

template <class Action>
size_t HeapAfter(int nTimes, Action action) {
  for (int i = 0; i < nTimes; ++i) action();
  return HeapInUse();
}

template <class Action>
void ExpectNothingKept(Action action) {
  const size_t before = HeapAfter(10, action);  // what is kept by the first calls of anything
  EXPECT_EQ(HeapAfter(100, action), before);
}

TEST_F(BindMemory, IsGivenBackWithTheBind) {
  CColumn id = ColumnOf(IdColumn());
  CColumn number = ColumnOf(NumberColumn("N", 5, 2));
  CColumn text = ColumnOf(TextColumn("T", 40));
  CColumn date = ColumnOf(DateColumn("D"));
  for (CColumn* pColumn : {&id, &number, &text, &date}) {
    SCOPED_TRACE(pColumn->GetName().ToChar());
    ExpectNothingKept([&] { std::unique_ptr<IBind>(pColumn->CreateBind(500))->GetDataGenerator(); });
  }
}

TEST_F(BindMemory, OfTheFirstInitializeIsGivenBackByTheSecond) {
  CColumn column = ColumnOf(TextColumn("T", 40));
  const auto recorder = wxSetAssertHandler([](auto...) {});  // a recorded report is memory too
  ExpectNothingKept([&] {
    const std::unique_ptr<IBind> pBind(column.CreateBind(500));
    pBind->Initialize();
  });
  wxSetAssertHandler(recorder);
}

TEST_F(BindMemory, IsGivenBackOnceWhenTheSecondInitializeIsRefusedItsArrays) {
  CColumn column = ColumnOf(TextColumn("T", 65535));
  CStrBind<char> bind(&column, 10, 65536);
  ASSERT_EQ(bind.Initialize(), 1);
  bind.m_nMaxRows = 0xFFFFFFFFU;  // 256 TB
  EXPECT_EQ(bind.Initialize(), 0);
  EXPECT_EQ(bind.m_pData, nullptr);
  EXPECT_EQ(bind.m_pIndicator, nullptr);
}

TEST_F(BindMemory, OfATextGeneratorIsGivenBackWhenItIsAllocatedAnew) {
  ExpectNothingKept([] {
    CStrGenerator generator(400);
    EXPECT_EQ(generator.AllocStr(), 1);
    generator.m_nMaxLength = 0;
    EXPECT_EQ(generator.AllocStr(), 0);
  });
}

TEST_F(BindMemory, OfColumnsIsGivenBackWithTheirArray) {
  ExpectNothingKept([] {
    CColumns columns;
    for (int i = 1; i <= 5; ++i) columns.m_ColArray.Add(new CColumn(nullptr, nullptr, i));
  });
}

TEST_F(BindMemory, IsGivenBackWithTheLoaderThatMadeTheBinds) {
  CColumns columns;
  columns.m_ColArray.Add(new CColumn(ColumnOf(IdColumn())));
  columns.m_ColArray.Add(new CColumn(ColumnOf(TextColumn("T", 40))));
  columns.m_nColumns = 2;
  ExpectNothingKept([&] {
    CTableLoader loader(&m_driver, L"T");
    EXPECT_EQ(loader.Initialize(&columns, 500), 1);
  });
}

}  // namespace
