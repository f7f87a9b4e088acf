// SPDX-License-Identifier: Apache-2.0
// The library is loaded at run time, used and unloaded, as a host does it. This program does not link it.
#include <dlfcn.h>

#include <memory>

#include "ConnectedDriver.h"
#include "db/Xact.h"

namespace {

using EntryFunction = int (*)(CSSBenchmark**);

class LoadedLibrary : public scripted::ConnectedDriver<> {
 protected:
  static bool IsRegistered(const wchar_t* szClass) { return wxClassInfo::FindClass(szClass) != nullptr; }

  static std::unique_ptr<CSSBenchmark> NewBenchmark(void* library) {
    const auto entry = reinterpret_cast<EntryFunction>(dlsym(library, "GetBenchmarkClassInfo"));
    if (entry == nullptr) return nullptr;
    CSSBenchmark* pBenchmark = nullptr;
    EXPECT_EQ(entry(&pBenchmark), 1);
    return std::unique_ptr<CSSBenchmark>(pBenchmark);
  }

  // Runs a transaction of the library, found by its class name, on the scripted driver.
  void RunSequenceCreation(CSSBenchmark* pBenchmark) {
    const std::unique_ptr<wxObject> object(wxCreateDynamicObject(L"CXact_Create_Sequence"));
    CXact* pXact = dynamic_cast<CXact*>(object.get());
    ASSERT_NE(pXact, nullptr);
    pXact->SetDriver(&m_driver);
    pXact->SetBenchmark(pBenchmark);
    EXPECT_EQ(pXact->Execute(), 1);
  }
};

TEST_F(LoadedLibrary, IsUsedAndUnloadedAgainAndAgainAndTakesItsClassesAlong) {
  for (int nTime = 0; nTime < 10; ++nTime) {
    EXPECT_FALSE(IsRegistered(L"CREP_ORA8"));
    void* library = dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    EXPECT_TRUE(IsRegistered(L"CREP_ORA8"));
    EXPECT_TRUE(IsRegistered(L"CXact_Delete"));
    {
      const std::unique_ptr<CSSBenchmark> benchmark = NewBenchmark(library);
      ASSERT_NE(benchmark, nullptr);
      EXPECT_EQ(benchmark->RegisterTransactions(1), 1);
      EXPECT_EQ(benchmark->GetXactCount(), 13);
      RunSequenceCreation(benchmark.get());
    }
    EXPECT_EQ(dlclose(library), 0);
    EXPECT_EQ(dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_NOLOAD), nullptr) << "still loaded";
    for (const wchar_t* szClass : {L"CREP_ORA8", L"CREP_Refresh_Base", L"CXact_Insert", L"CXact_Delete"})
      EXPECT_FALSE(IsRegistered(szClass));
  }
  EXPECT_EQ(scripted::Oci().ExecutedSql().size(), 10u);
  EXPECT_EQ(ExtraHandles(), 0);
}

}  // namespace
