// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/ErrorTable.h"

#include <gtest/gtest.h>

#include "oci/mariadb/OraError.h"

namespace ocimaria {
namespace {

TEST(ErrorTable, FindsEveryEntryByItsNumber) {
  for (const ErrorEntry& entry : AllErrors()) EXPECT_EQ(FindError(entry.code), &entry) << entry.code;
}

TEST(ErrorTable, HasNoEntryForAnUnknownNumber) {
  EXPECT_EQ(FindError(0), nullptr);
  EXPECT_EQ(FindError(2), nullptr);
  EXPECT_EQ(FindError(99999), nullptr);
}

TEST(OraError, TakesTheTextOfItsNumber) {
  const OraError error(942);
  EXPECT_EQ(error.Code(), 942);
  EXPECT_EQ(error.Text(), "table or view does not exist");
}

TEST(OraError, PutsItsArgumentsIntoTheText) {
  EXPECT_EQ(OraError(904, {"FOO"}).Text(), "\"FOO\": invalid identifier");
  EXPECT_EQ(OraError(12899, {"\"S\".\"T\".\"C\"", "12", "10"}).Text(),
            "value too large for column \"S\".\"T\".\"C\" (actual: 12, maximum: 10)");
}

TEST(OraError, LeavesThePlaceOfAMissingArgumentEmpty) {
  EXPECT_EQ(OraError(6550, {"3"}).Text(), "line 3, column :\n");
}

TEST(OraError, KeepsATextOfTheCallersOwn) {
  const OraError error = OraError::WithText(3001, "unimplemented feature: MERGE");
  EXPECT_EQ(error.Code(), 3001);
  EXPECT_STREQ(error.what(), "unimplemented feature: MERGE");
}

}  // namespace
}  // namespace ocimaria
