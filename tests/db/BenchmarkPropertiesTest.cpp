// SPDX-License-Identifier: Apache-2.0
#include "db/BenchmarkProperties.h"

#include <gtest/gtest.h>

namespace {

TEST(BenchmarkProperties, StartWithScaleOneNothingLoadedAndNoOptions) {
  CBenchmarkProperties properties;
  EXPECT_EQ(properties.GetScale(), 1.0);
  EXPECT_EQ(properties.GetCurrentScale(), 1.0);
  EXPECT_EQ(properties.GetLoadedMaxScale(), 0.0);
  EXPECT_FALSE(properties.IsCreateUseBackup());
  EXPECT_FALSE(properties.IsEnablePartition());
  EXPECT_FALSE(properties.GetLastIsBackupOption());
  EXPECT_FALSE(properties.GetLastLoadFailed());
  EXPECT_EQ(properties.GetIntAttribute1(), 0);
  EXPECT_EQ(properties.GetIntAttribute2(), 0);
  EXPECT_EQ(properties.GetIntAttribute3(), 0);
  EXPECT_TRUE(properties.GetBenchmarkCreationSQLMappings().IsEmpty());
}

TEST(BenchmarkProperties, KeepEachSettingApartFromTheOthers) {
  CBenchmarkProperties properties;
  properties.SetScale(2.5);
  properties.SetCurrentScale(1.5);
  properties.SetLoadedMaxScale(3.5);
  properties.SetIntAttribute1(5);
  properties.SetIntAttribute2(6);
  properties.SetIntAttribute3(7);
  properties.SetCreateUseBackup(true);
  properties.SetLastLoadFailed(true);
  EXPECT_EQ(properties.GetScale(), 2.5);
  EXPECT_EQ(properties.GetCurrentScale(), 1.5);
  EXPECT_EQ(properties.GetLoadedMaxScale(), 3.5);
  EXPECT_EQ(properties.GetIntAttribute1(), 5);
  EXPECT_EQ(properties.GetIntAttribute2(), 6);
  EXPECT_EQ(properties.GetIntAttribute3(), 7);
  EXPECT_TRUE(properties.IsCreateUseBackup());
  EXPECT_TRUE(properties.GetLastLoadFailed());
  EXPECT_FALSE(properties.IsEnablePartition());
  EXPECT_FALSE(properties.GetLastIsBackupOption());
  properties.SetEnablePartition(true);
  properties.SetLastIsBackupOption(true);
  EXPECT_TRUE(properties.IsEnablePartition());
  EXPECT_TRUE(properties.GetLastIsBackupOption());
}

TEST(RepBenchmarkProperties, NumberTheirDistributionsFromNoneToPoisson) {
  EXPECT_EQ(CRepBenchmarkProperties::NONE_DISTRIBUTION, 0);
  EXPECT_EQ(CRepBenchmarkProperties::ABSOLUTE_DISTRIBUTION, 1);
  EXPECT_EQ(CRepBenchmarkProperties::UNIFORM_DISTRIBUTION, 2);
  EXPECT_EQ(CRepBenchmarkProperties::NEGEXP_DISTRIBUTION, 3);
  EXPECT_EQ(CRepBenchmarkProperties::NORMAL_DISTRIBUTION, 4);
  EXPECT_EQ(CRepBenchmarkProperties::POISSON_DISTRIBUTION, 5);
}

TEST(RepBenchmarkProperties, KeepTableAndColumnNumbersAndTheDistribution) {
  CRepBenchmarkProperties properties;
  properties.SetTableNumber(4);
  properties.SetColumnNumbers(5, 12);
  properties.SetColumnDistribution(CRepBenchmarkProperties::NORMAL_DISTRIBUTION);
  EXPECT_EQ(properties.GetTableNumber(), 4);
  EXPECT_EQ(properties.GetMinColumnNumber(), 5);
  EXPECT_EQ(properties.GetMaxColumnNumber(), 12);
  EXPECT_EQ(properties.GetColumnDistribution(), CRepBenchmarkProperties::NORMAL_DISTRIBUTION);
}

TEST(ColumnDefinitions, MadeByTheirClassNameAreNeverChosen) {
  const std::unique_ptr<wxObject> pObject(wxCreateDynamicObject("ColumnInfo"));
  const auto* pColumn = dynamic_cast<ColumnInfo*>(pObject.get());
  ASSERT_NE(pColumn, nullptr);
  EXPECT_TRUE(pColumn->GetTypeName().IsEmpty());
  EXPECT_EQ(pColumn->GetWeight(), 0);
  EXPECT_FALSE(pColumn->GetIsNull());
}

TEST(ColumnDefinitions, AreMissingUntilTheyAreSet) {
  CRepBenchmarkProperties properties;
  EXPECT_EQ(properties.GetColumnInfo(), nullptr);
  properties.SetColumnInfo({});
  ASSERT_NE(properties.GetColumnInfo(), nullptr);
  EXPECT_EQ(properties.GetColumnInfo()->GetSize(), 0);
  properties.ClearColumnInfo();
  EXPECT_EQ(properties.GetColumnInfo(), nullptr);
}

TEST(ColumnDefinitions, StandInTheOrderGivenWithNullEntriesKept) {
  CRepBenchmarkProperties properties;
  properties.SetColumnInfo({std::make_shared<ColumnInfo>(L"NUMBER(5,2)", 3, false), nullptr,
                            std::make_shared<ColumnInfo>(L"DATE", 1, true)});
  const ColumnInfoArray& columns = *properties.GetColumnInfo();
  ASSERT_EQ(columns.GetSize(), 3);
  const auto* number = wxDynamicCast(columns[0], ColumnInfo);
  ASSERT_NE(number, nullptr);
  EXPECT_EQ(number->GetTypeName(), LKString(L"NUMBER(5,2)"));
  EXPECT_EQ(number->GetWeight(), 3);
  EXPECT_FALSE(number->GetIsNull());
  EXPECT_EQ(columns[1], nullptr);
  EXPECT_TRUE(wxDynamicCast(columns[2], ColumnInfo)->GetIsNull());
}

TEST(ColumnDefinitions, OfACopyOutliveTheirReplacementInTheOriginal) {
  CBenchmarkProperties original;
  original.GetRepBenchmarkProperties().SetColumnInfo({std::make_shared<ColumnInfo>(L"NUMBER", 1, false)});
  const CBenchmarkProperties copy = original;
  EXPECT_EQ(copy.GetRepBenchmarkProperties().GetColumnInfo(),
            original.GetRepBenchmarkProperties().GetColumnInfo());
  original.GetRepBenchmarkProperties().SetColumnInfo({std::make_shared<ColumnInfo>(L"DATE", 1, false)});
  const auto* kept = wxDynamicCast((*copy.GetRepBenchmarkProperties().GetColumnInfo())[0], ColumnInfo);
  EXPECT_EQ(kept->GetTypeName(), LKString(L"NUMBER"));
}

}  // namespace
