// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "core/TRKArray.h"

namespace {

class IntArray : public CTRKArray<int, int> {
 public:
  IntArray(std::initializer_list<int> values = {}) {
    for (const int nValue : values) Add(nValue);
  }
};

std::vector<int> Values(const CTRKArray<int, int>& array) { return {array.begin(), array.end()}; }

}  // namespace

TEST(Array, UpperBoundOfAnEmptyArrayIsMinusOne) {
  const IntArray array;
  EXPECT_EQ(array.GetUpperBound(), -1);
  EXPECT_EQ(array.GetCount(), 0);
  EXPECT_TRUE(array.IsEmpty());
}

TEST(Array, AddGivesTheIndexOfTheNewElement) {
  IntArray array;
  EXPECT_EQ(array.Add(5), 0);
  EXPECT_EQ(array.Add(6), 1);
  EXPECT_EQ(array.GetUpperBound(), 1);
  EXPECT_EQ(array.GetSize(), 2);
  EXPECT_EQ(array.GetAt(1), 6);
}

TEST(Array, SetAtAndIndexWriteInPlace) {
  IntArray array{1, 2};
  array.SetAt(0, 7);
  array[1] = 8;
  EXPECT_EQ(Values(array), (std::vector<int>{7, 8}));
}

TEST(Array, IndexOutsideThrows) {
  IntArray array{1};
  const IntArray& fixed = array;
  EXPECT_THROW(array[1], std::out_of_range);
  EXPECT_THROW(array[-1], std::out_of_range);
  EXPECT_THROW(fixed[1], std::out_of_range);
  EXPECT_THROW(array.GetAt(1), std::out_of_range);
  EXPECT_THROW(array.SetAt(-1, 0), std::out_of_range);
}

TEST(Array, SetSizeCutsAndFillsUp) {
  IntArray array{1, 2, 3};
  array.SetSize(1);
  EXPECT_EQ(Values(array), std::vector<int>{1});
  array.SetSize(3);
  EXPECT_EQ(Values(array), (std::vector<int>{1, 0, 0}));
}

TEST(Array, AppendGivesTheIndexOfTheFirstNewElement) {
  IntArray array{1};
  EXPECT_EQ(array.Append(IntArray{2, 3}), 1);
  EXPECT_EQ(Values(array), (std::vector<int>{1, 2, 3}));
  EXPECT_EQ(array.Append(array), 3);
  EXPECT_EQ(Values(array), (std::vector<int>{1, 2, 3, 1, 2, 3}));
}

TEST(Array, CopyAndAssignmentReplaceTheElements) {
  IntArray array{1};
  array.Copy(IntArray{2, 3});
  EXPECT_EQ(Values(array), (std::vector<int>{2, 3}));
  const IntArray other{4};
  array = other;
  EXPECT_EQ(Values(array), std::vector<int>{4});
}

TEST(Array, InsertAtMovesTheRestUp) {
  IntArray array{1, 4};
  array.InsertAt(1, 9, 2);
  EXPECT_EQ(Values(array), (std::vector<int>{1, 9, 9, 4}));
}

TEST(Array, InsertPastTheEndFillsTheGap) {
  IntArray array{1};
  array.InsertAt(3, 9);
  EXPECT_EQ(Values(array), (std::vector<int>{1, 0, 0, 9}));
}

TEST(Array, RemoveAtMovesTheRestDown) {
  IntArray array{1, 2, 3, 4};
  array.RemoveAt(1, 2);
  EXPECT_EQ(Values(array), (std::vector<int>{1, 4}));
  array.RemoveAt(0);
  EXPECT_EQ(Values(array), std::vector<int>{4});
}

TEST(Array, RemoveOutsideThrowsAndChangesNothing) {
  IntArray array{1, 2};
  EXPECT_THROW(array.RemoveAt(1, 2), std::out_of_range);
  EXPECT_THROW(array.RemoveAt(-1), std::out_of_range);
  EXPECT_THROW(array.InsertAt(-1, 0), std::out_of_range);
  EXPECT_EQ(Values(array), (std::vector<int>{1, 2}));
}

TEST(Array, OwnsItsStorageAndNotWhatItPointsTo) {
  int nAlive = 0;
  struct Counted : wxObject {
    explicit Counted(int& n) : nAlive(n) { ++nAlive; }
    ~Counted() override { --nAlive; }
    int& nAlive;
  } object(nAlive);
  {
    CTRKArray<wxObject*, wxObject*> array;
    array.Add(&object);
    array.RemoveAll();
    array.Add(&object);
  }
  EXPECT_EQ(nAlive, 1);
}

TEST(Array, IsAnObjectWithOneVector) {
  EXPECT_EQ(sizeof(IntArray), sizeof(wxObject) + sizeof(std::vector<int>));
}

TEST(Array, OfStringsHoldsStrings) {
  CTRKStringArray array;
  array.Add(L"LK_REP_TABLE1");
  EXPECT_EQ(array.GetAt(0), LKString(L"LK_REP_TABLE1"));
}
