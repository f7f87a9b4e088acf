// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <vector>

#include "core/TRKMap.h"

namespace {

using LongMap = CTRKMap<long, long>;

std::vector<long> Keys(const LongMap& map) {
  std::vector<long> keys;
  long key = 0;
  long value = 0;
  for (auto pos = map.GetStartPosition(); pos != map.GetEndPosition();) {
    map.GetNextAssoc(pos, key, value);
    keys.push_back(key);
  }
  return keys;
}

}  // namespace

TEST(Map, LookupInAnEmptyMapGives0AndWritesNothing) {
  const LongMap map;
  long value = 77;
  EXPECT_EQ(map.Lookup(1, value), 0);
  EXPECT_EQ(value, 77);
}

TEST(Map, LookupOfAnAbsentKeyGives0AndWritesNothing) {
  LongMap map;
  map.SetAt(2, 20);
  long value = 77;
  EXPECT_EQ(map.Lookup(1, value), 0);
  EXPECT_EQ(value, 77);
}

TEST(Map, LookupOfAKeyGives1AndItsValue) {
  LongMap map;
  map.SetAt(2, 20);
  long value = 0;
  EXPECT_EQ(map.Lookup(2, value), 1);
  EXPECT_EQ(value, 20);
}

TEST(Map, SetAtAnExistingKeyReplacesTheValueAndNotTheCount) {
  LongMap map;
  map.SetAt(10, 7);
  map.SetAt(10, 6);
  long value = 0;
  map.Lookup(10, value);
  EXPECT_EQ(value, 6);
  EXPECT_EQ(map.GetCount(), 1);
  EXPECT_EQ(map.GetSize(), 1);
}

TEST(Map, RemovingAnAbsentKeyGivesFalseAndChangesNothing) {
  LongMap map;
  EXPECT_FALSE(map.RemoveKey(1));
  map.SetAt(2, 20);
  EXPECT_FALSE(map.RemoveKey(1));
  EXPECT_EQ(Keys(map), std::vector<long>{2});
}

TEST(Map, RemovingAKeyGivesTrue) {
  LongMap map;
  map.SetAt(1, 10);
  map.SetAt(2, 20);
  EXPECT_TRUE(map.RemoveKey(1));
  EXPECT_EQ(Keys(map), std::vector<long>{2});
}

TEST(Map, IsEmptyAgainAfterRemoveAll) {
  LongMap map;
  map.SetAt(1, 10);
  EXPECT_FALSE(map.IsEmpty());
  map.RemoveAll();
  EXPECT_TRUE(map.IsEmpty());
  EXPECT_EQ(map.GetCount(), 0);
}

TEST(Map, IsVisitedFromTheSmallestKeyToTheLargest) {
  LongMap map;
  for (const long key : {30L, -1L, 10L, 20L}) map.SetAt(key, key * 2);
  EXPECT_EQ(Keys(map), (std::vector<long>{-1, 10, 20, 30}));
}

TEST(Map, NextAtTheEndWritesNothingAndStays) {
  LongMap map;
  map.SetAt(1, 10);
  long key = 5;
  long value = 6;
  auto pos = map.GetEndPosition();
  map.GetNextAssoc(pos, key, value);
  EXPECT_EQ(key, 5);
  EXPECT_EQ(value, 6);
  EXPECT_EQ(pos, map.GetEndPosition());

  const LongMap& fixed = map;
  auto fixedPos = fixed.GetEndPosition();
  fixed.GetNextAssoc(fixedPos, key, value);
  EXPECT_EQ(key, 5);
  EXPECT_EQ(fixedPos, fixed.GetEndPosition());
}

TEST(Map, PositionsOfBothNamesAreTheSame) {
  LongMap map;
  map.SetAt(2, 20);
  map.SetAt(1, 10);
  auto pos = map.PGetFirstAssoc();
  EXPECT_EQ(pos, map.GetStartPosition());
  EXPECT_EQ(pos->first, 1);
  map.PGetNextAssoc(pos);
  EXPECT_EQ(pos->first, 2);

  const LongMap& fixed = map;
  auto fixedPos = fixed.PGetFirstAssoc();
  EXPECT_EQ(fixedPos, fixed.GetStartPosition());
  fixed.PGetNextAssoc(fixedPos);
  EXPECT_EQ(fixedPos->second, 20);
}

TEST(Map, OfStringsIsOrderedAsStringsAre) {
  CTRKMapStringToString map;
  map.SetAt(L"b", L"2");
  map.SetAt(L"B", L"1");
  map.SetAt(L"a", L"3");
  std::string keys;
  LKString key;
  LKString value;
  for (auto pos = map.GetStartPosition(); pos != map.GetEndPosition();) {
    map.GetNextAssoc(pos, key, value);
    keys += key.ToChar();
  }
  EXPECT_EQ(keys, "Bab");
}

TEST(Map, MayHoldPointersAndOtherWidthsThanItsKeys) {
  wxObject object;
  CTRKMap<int, long> numbers;
  CTRKMap<LKString, void*> pointers;
  CTRKMap<LKString, wxObject*> objects;
  numbers.SetAt(-1, 5000000000L);
  pointers.SetAt(L"key", &object);
  objects.SetAt(L"key", &object);
  long number = 0;
  void* pFound = nullptr;
  wxObject* pObject = nullptr;
  EXPECT_EQ(numbers.Lookup(-1, number), 1);
  EXPECT_EQ(pointers.Lookup(L"key", pFound), 1);
  EXPECT_EQ(objects.Lookup(L"key", pObject), 1);
  EXPECT_EQ(number, 5000000000L);
  EXPECT_EQ(pFound, &object);
  EXPECT_EQ(pObject, &object);
}

TEST(Map, LookupAnswersWithAnIntAndARemovalWithABool) {
  LongMap map;
  long value = 0;
  static_assert(std::is_same_v<decltype(map.Lookup(1, value)), int>);
  static_assert(std::is_same_v<decltype(map.RemoveKey(1)), bool>);
}

TEST(Map, IsAnObjectOfTheHost) {
  LongMap map;
  EXPECT_NE(dynamic_cast<wxObject*>(&map), nullptr);
}

TEST(Map, HasRoomForAnErrorTextThatItDoesNotUse) {
  EXPECT_EQ(sizeof(LongMap), sizeof(wxObject) + sizeof(std::map<long, long>) + sizeof(LKString));
}
