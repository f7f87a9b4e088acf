// SPDX-License-Identifier: Apache-2.0
// The class information of the benchmark and of every transaction: what it says of the class, and what is
// created by its name.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

#include "Benchmarks/CREP_ORA8/CREP_CreateObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/CREP_DeleteObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/CREP_InitObjects_ORA8.h"
#include "Benchmarks/CREP_ORA8/CREP_ORA8.h"
#include "Benchmarks/CREP_ORA8/REP_RefreshTables_ORA8.h"
#include "Benchmarks/CREP_ORA8/Xact_Delete.h"
#include "Benchmarks/CREP_ORA8/Xact_Insert.h"
#include "Benchmarks/CREP_ORA8/Xact_Update.h"

namespace {

// A class, its base, and what both are called.
template <class ClassType, class BaseType>
struct Entry {
  using Class = ClassType;
  using Base = BaseType;
  const char* name;
  const char* base;
};

template <class Visitor>
void ForEachClass(Visitor visit) {
  visit(Entry<CREP_ORA8, CSSBenchmark>{"CREP_ORA8", "CSSBenchmark"});
  visit(Entry<CXact_Create_RepTables, CXact>{"CXact_Create_RepTables", "CXact"});
  visit(Entry<CXact_Create_Sequence, CXact>{"CXact_Create_Sequence", "CXact"});
  visit(Entry<CXact_Create_Replication_Properties_Table, CXact>{"CXact_Create_Replication_Properties_Table",
                                                                "CXact"});
  visit(Entry<CXact_Drop_RepTables, CXact>{"CXact_Drop_RepTables", "CXact"});
  visit(Entry<CXact_Drop_Sequence, CXact>{"CXact_Drop_Sequence", "CXact"});
  visit(Entry<CXact_Drop_Replication_Properties_Table, CXact>{"CXact_Drop_Replication_Properties_Table",
                                                              "CXact"});
  visit(Entry<CXact_LoadTable_ORA8, CXact>{"CXact_LoadTable_ORA8", "CXact"});
  visit(Entry<CREP_Refresh_Base, CXact>{"CREP_Refresh_Base", "CXact"});
  visit(Entry<CREP_RefreshTable_ORA8, CREP_Refresh_Base>{"CREP_RefreshTable_ORA8", "CREP_Refresh_Base"});
  visit(Entry<CREP_Refresh_Properties_Table, CREP_Refresh_Base>{"CREP_Refresh_Properties_Table",
                                                                "CREP_Refresh_Base"});
  visit(Entry<CREP_Refresh_Sequence, CREP_Refresh_Base>{"CREP_Refresh_Sequence", "CREP_Refresh_Base"});
  visit(Entry<CXact_Insert, CXact>{"CXact_Insert", "CXact"});
  visit(Entry<CXact_Update, CXact>{"CXact_Update", "CXact"});
  visit(Entry<CXact_Delete, CXact>{"CXact_Delete", "CXact"});
}

TEST(ClassInformation, SaysNameBaseAndSize) {
  ForEachClass([]<class C, class B>(const Entry<C, B>& entry) {
    const wxClassInfo* info = wxClassInfo::FindClass(entry.name);
    ASSERT_NE(info, nullptr) << entry.name;
    EXPECT_EQ(info, CLASSINFO(C)) << entry.name;
    EXPECT_EQ(wxString(info->GetClassName()).utf8_string(), entry.name);
    EXPECT_EQ(wxString(info->GetBaseClassName1()).utf8_string(), entry.base) << entry.name;
    EXPECT_EQ(info->GetBaseClass1(), CLASSINFO(B)) << entry.name;
    EXPECT_EQ(info->GetBaseClass2(), nullptr) << entry.name;
    EXPECT_EQ(info->GetSize(), static_cast<int>(sizeof(C))) << entry.name;
    EXPECT_TRUE(info->IsDynamic()) << entry.name;
  });
}

TEST(ClassInformation, CreatesAnObjectOfExactlyTheClass) {
  ForEachClass([]<class C, class B>(const Entry<C, B>& entry) {
    const std::unique_ptr<wxObject> object(wxCreateDynamicObject(entry.name));
    ASSERT_NE(object, nullptr) << entry.name;
    const wxObject& created = *object;
    EXPECT_EQ(typeid(created), typeid(C)) << entry.name;
    EXPECT_EQ(object->GetClassInfo(), CLASSINFO(C)) << entry.name;
  });
}

TEST(ClassInformation, KnowsTheKindsOfAnObjectAndNoOthers) {
  ForEachClass([]<class C, class B>(const Entry<C, B>& entry) {
    const C object;
    EXPECT_TRUE(object.IsKindOf(CLASSINFO(C))) << entry.name;
    EXPECT_TRUE(object.IsKindOf(CLASSINFO(B))) << entry.name;
    EXPECT_TRUE(object.IsKindOf(CLASSINFO(wxObject))) << entry.name;
    ForEachClass([&]<class Other, class OtherBase>(const Entry<Other, OtherBase>& other) {
      const bool kind = std::is_base_of_v<Other, C>;
      EXPECT_EQ(object.IsKindOf(CLASSINFO(Other)), kind) << entry.name << " as " << other.name;
    });
  });
}

// Where a class stands in the global list; the front holds what was registered last.
long DistanceFromFront(const std::string& name) {
  long nDistance = 0;
  for (const wxClassInfo* info = wxClassInfo::GetFirst(); info != nullptr;
       info = info->GetNext(), ++nDistance)
    if (wxString(info->GetClassName()).utf8_string() == name) return nDistance;
  return -1;
}

TEST(ClassInformation, TheClassesOfASourceFileAreRegisteredInTheirOrder) {
  const std::vector<std::vector<std::string>> files = {
      {"CXact_Create_RepTables", "CXact_Create_Sequence", "CXact_Create_Replication_Properties_Table"},
      {"CXact_Drop_RepTables", "CXact_Drop_Sequence", "CXact_Drop_Replication_Properties_Table"},
      {"CREP_Refresh_Base", "CREP_RefreshTable_ORA8", "CREP_Refresh_Properties_Table",
       "CREP_Refresh_Sequence"}};
  for (const std::vector<std::string>& classes : files)
    for (size_t i = 1; i < classes.size(); ++i)
      EXPECT_EQ(DistanceFromFront(classes[i - 1]), DistanceFromFront(classes[i]) + 1) << classes[i];
}

TEST(ClassInformation, OfTheLoadOfOneTableIsThatOfEveryTransaction) {
  const CXact_LoadTableBase_ORA8 load;
  EXPECT_EQ(wxClassInfo::FindClass("CXact_LoadTableBase_ORA8"), nullptr);
  EXPECT_EQ(load.GetClassInfo(), CLASSINFO(CXact));
}

}  // namespace
