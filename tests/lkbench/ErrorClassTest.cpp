// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/ErrorClass.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace lkbench {
namespace {

TEST(ErrorClass, AnOracleAndAMariaDbNumberOfOneFailureHaveOneName) {
  const auto expect = [](const char* name, long oracle, long mariadb) {
    EXPECT_STREQ(NameOf(ClassOf(oracle, "")), name) << oracle;
    EXPECT_STREQ(NameOf(ClassOfMariaDb(mariadb)), name) << mariadb;
  };
  expect("duplicate-key", 1, 1062);
  expect("deadlock", 60, 1213);
  expect("lock-timeout", 30006, 1205);
  expect("session-lost", 3113, 2013);
  expect("refused", 12514, 2003);
  expect("no-space", 1653, 1114);
  expect("cancelled", 1013, 1317);
  expect("constraint", 1400, 1048);
  expect("bad-value", 12899, 1406);
  expect("bad-statement", 942, 1146);
  expect("no-privilege", 1031, 1142);
  expect("read-only", 16000, 1290);
}

TEST(ErrorClass, AnUnknownNumberIsOther) {
  EXPECT_EQ(ClassOf(0, "an unknown exception"), ErrorClass::kOther);
  EXPECT_EQ(ClassOf(99999, ""), ErrorClass::kOther);
  EXPECT_EQ(ClassOfMariaDb(1), ErrorClass::kOther);
  EXPECT_STREQ(NameOf(ErrorClass::kOther), "other");
}

TEST(ErrorClass, AMariaDbNumberWithoutACounterpartIsTakenFromTheText) {
  EXPECT_EQ(ClassOf(28500, "Delete (x)\nORA-28500: message from the other database: (1206) lock table full"),
            ErrorClass::kNoSpace);
  EXPECT_EQ(ClassOf(28500, "ORA-28500: (1644) told to fail"), ErrorClass::kOther);
  EXPECT_EQ(ClassOf(28500, "nothing in parentheses"), ErrorClass::kOther);
}

TEST(ErrorClass, NamesDiffer) {
  std::set<std::string> names;
  for (std::size_t i = 0; i < kErrorClasses; ++i) names.insert(NameOf(static_cast<ErrorClass>(i)));
  EXPECT_EQ(names.size(), kErrorClasses);
}

}  // namespace
}  // namespace lkbench
