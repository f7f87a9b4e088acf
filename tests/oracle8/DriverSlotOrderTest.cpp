// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <memory>

#include "VtableSlot.h"
#include "oracle8/Oracle8Driver.h"

namespace {

TEST(DriverSlotOrder, OfTheBackupOperationsLeavesOneSlotBehindTheFirst) {
  const auto first = VtableSlot(&COracle8Driver::PrepareRenameFromBackup);
  EXPECT_EQ(first, VtableSlot(&COracle8Driver::GetServerVersion) + 1);
  EXPECT_EQ(VtableSlot(&COracle8Driver::CreateBackupTable), first + 2);
  EXPECT_EQ(VtableSlot(&COracle8Driver::RestoreFromBackup), first + 3);
  EXPECT_EQ(VtableSlot(&COracle8Driver::BackupExists), first + 4);
  EXPECT_EQ(VtableSlot(&COracle8Driver::DropBackupTable), first + 5);
}

TEST(DriverSlotOrder, HasNoSlotForTheRenamingAndTheErrorReports) {
  using Report = int (COracle8Driver::*)(int, OCIError*, int, int);
  using ReportWithText = int (COracle8Driver::*)(int, OCIError*, LKString, int, int);
  EXPECT_EQ(VtableSlot(&COracle8Driver::ChangeTableName), -1);
  EXPECT_EQ(VtableSlot(static_cast<Report>(&COracle8Driver::HandleError)), -1);
  EXPECT_EQ(VtableSlot(static_cast<ReportWithText>(&COracle8Driver::HandleError)), -1);
}

TEST(Driver, IsMadeByItsClassNameAndIsADriverAndAnErrorHandler) {
  const std::unique_ptr<wxObject> object(wxCreateDynamicObject(wxT("COracle8Driver")));
  auto* driver = dynamic_cast<COracle8Driver*>(object.get());
  ASSERT_NE(driver, nullptr);
  EXPECT_TRUE(driver->IsKindOf(CLASSINFO(CDriverBase)));
  EXPECT_NE(static_cast<CErrorHandler*>(driver), nullptr);
  EXPECT_EQ(driver->IsConnected(), 0);
  EXPECT_EQ(driver->GetOCIEnvironment(), nullptr);
  EXPECT_EQ(driver->GetOCIServerContext(), nullptr);
  EXPECT_EQ(driver->GetOCIError(), nullptr);
}

}  // namespace
