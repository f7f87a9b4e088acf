// SPDX-License-Identifier: Apache-2.0
// The library is loaded at run time, used and unloaded, as a host does it. This program does not link it.
#include <dlfcn.h>
#include <wx/log.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <memory>
#include <set>

#include "ConnectedDriver.h"
#include "db/Xact.h"

namespace {

using EntryFunction = int (*)(CSSBenchmark**);

constexpr int kTimes = 100;
constexpr std::array kClasses = {L"CREP_ORA8",
                                 L"CXact_Create_RepTables",
                                 L"CXact_Drop_RepTables",
                                 L"CXact_LoadTable_ORA8",
                                 L"CXact_Create_Sequence",
                                 L"CXact_Drop_Sequence",
                                 L"CXact_Create_Replication_Properties_Table",
                                 L"CXact_Drop_Replication_Properties_Table",
                                 L"CREP_Refresh_Base",
                                 L"CREP_RefreshTable_ORA8",
                                 L"CREP_Refresh_Properties_Table",
                                 L"CREP_Refresh_Sequence",
                                 L"CXact_Insert",
                                 L"CXact_Update",
                                 L"CXact_Delete"};

int CountClassInformation() {
  int nClasses = 0;
  for (const wxClassInfo* pInfo = wxClassInfo::GetFirst(); pInfo != nullptr; pInfo = pInfo->GetNext())
    ++nClasses;
  return nClasses;
}

// The files that are mapped into the process.
std::set<std::string> MappedFiles() {
  std::set<std::string> files;
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);)
    if (const size_t path = line.find('/'); path != std::string::npos) files.insert(line.substr(path));
  return files;
}

class LoadedLibrary : public scripted::ConnectedDriver<> {
 protected:
  LoadedLibrary() {
    wxLog::SetLogLevel(wxLOG_Message);
    m_properties.GetRepBenchmarkProperties().SetTableNumber(1);
    scripted::Oci().Describe("SELECT * FROM LK_REP_TABLE1",
                             {{"ID", SQLT_NUM, 22, 0, -127, 0}, {"COLUMN1", SQLT_CHR, 4}});
    scripted::Oci().AnswerCounting("SELECT LK_REP_ID_SEQ.NEXTVAL FROM DUAL", 1001);
  }

  static std::unique_ptr<CSSBenchmark> NewBenchmark(void* library) {
    const auto entry = reinterpret_cast<EntryFunction>(dlsym(library, "GetBenchmarkClassInfo"));
    if (entry == nullptr) return nullptr;
    CSSBenchmark* pBenchmark = nullptr;
    EXPECT_EQ(entry(&pBenchmark), 1);
    return std::unique_ptr<CSSBenchmark>(pBenchmark);
  }

  static void ExpectRegistered(bool bRegistered) {
    for (const wchar_t* szClass : kClasses)
      EXPECT_EQ(wxClassInfo::FindClass(szClass) != nullptr, bRegistered) << wxString(szClass);
  }

  // Every class can be made; the benchmark's object goes by its own destructor.
  static void CreateEachClass() {
    for (const wchar_t* szClass : kClasses) {
      const std::unique_ptr<wxObject> object(wxCreateDynamicObject(szClass));
      ASSERT_NE(object, nullptr) << wxString(szClass);
      EXPECT_EQ(wxString(object->GetClassInfo()->GetClassName()), szClass);
    }
  }

  // Runs a transaction of the library, found by its class name, on the scripted driver.
  void RunOnce(const wchar_t* szClass, CSSBenchmark* pBenchmark) {
    const std::unique_ptr<wxObject> object(wxCreateDynamicObject(szClass));
    CXact* pXact = dynamic_cast<CXact*>(object.get());
    ASSERT_NE(pXact, nullptr);
    pXact->SetDriver(&m_driver);
    pXact->SetBenchmark(pBenchmark);
    pXact->SetBenchmarkProperties(m_properties);
    pXact->SetUserID(1);
    EXPECT_EQ(pXact->PreBenchmark(), 1);
    EXPECT_EQ(pXact->Execute(), 1);
    EXPECT_EQ(pXact->PostBenchmark(), 1);
  }

  void UseBenchmark(void* library) {
    const std::unique_ptr<CSSBenchmark> benchmark = NewBenchmark(library);
    ASSERT_NE(benchmark, nullptr);
    EXPECT_EQ(benchmark->RegisterTransactions(1), 1);
    EXPECT_EQ(benchmark->GetXactCount(), 13);
    RunOnce(L"CXact_Create_Sequence", benchmark.get());
    RunOnce(L"CXact_Insert", benchmark.get());
    RunOnce(L"CXact_Delete", benchmark.get());
  }

  void LoadUseAndUnload() {
    void* library = dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    ExpectRegistered(true);
    CreateEachClass();
    UseBenchmark(library);
    EXPECT_EQ(dlclose(library), 0);
    EXPECT_EQ(dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
    ExpectRegistered(false);
  }

  CBenchmarkProperties m_properties;
};

TEST_F(LoadedLibrary, IsUsedAndUnloadedAHundredTimesAndTakesEverythingAlong) {
  ExpectRegistered(false);
  LoadUseAndUnload();  // what the host's own libraries set up once is there from now on
  const int nClasses = CountClassInformation();
  const std::set<std::string> files = MappedFiles();
  for (int nTime = 1; nTime < kTimes && !HasFatalFailure(); ++nTime) LoadUseAndUnload();
  EXPECT_EQ(CountClassInformation(), nClasses);
  EXPECT_EQ(MappedFiles(), files);
  EXPECT_EQ(ExtraHandles(), 0);
  EXPECT_EQ(scripted::Oci().Violations(), std::vector<std::string>{});
  EXPECT_EQ(m_reports.Reports(), std::vector<std::string>{});
}

TEST_F(LoadedLibrary, InsertsAndDeletesTheRowsThatItRecorded) {
  LoadUseAndUnload();
  LoadUseAndUnload();
  const std::vector<std::string> sql = scripted::Oci().ExecutedSql();
  EXPECT_EQ(std::ranges::count(sql, "delete from LK_REP_TABLE1 where id = 1001"), 1);
  EXPECT_EQ(std::ranges::count(sql, "delete from LK_REP_TABLE1 where id = 1002"), 1);
}

}  // namespace
