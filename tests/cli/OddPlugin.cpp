// SPDX-License-Identifier: Apache-2.0
// A plug-in with the mistakes that a transcript shows: one class that wxWidgets does not know, and a load
// that reports a problem and says that it has succeeded.
#include "db/DriverBase.h"
#include "db/SSBenchmark.h"
#include "db/Xact.h"

namespace {

constexpr int kInsertID = 131, kLoadID = 110, kPropertiesID = 182, kSequenceID = 183;

class CUndeclared : public CXact {
 public:
  CUndeclared() {
    SetName(L"Undeclared");
    SetXactID(kInsertID);
  }
};

}  // namespace

class COddLoad : public CXact {
  wxDECLARE_DYNAMIC_CLASS(COddLoad);

 public:
  COddLoad() {
    SetName(L"Odd Load");
    SetXactID(kLoadID);
    SetTransactionType(LOAD_TABLE);
  }
  int Execute() override {
    m_pDriver->HandleErrorMsg(L"half of the rows are missing", 0);
    return 1;
  }
};
wxIMPLEMENT_DYNAMIC_CLASS(COddLoad, CXact);

// What a load runs besides, without work of its own.
class COddRefresh : public CXact {
  wxDECLARE_DYNAMIC_CLASS(COddRefresh);

 public:
  explicit COddRefresh(int nXactID = 0) {
    SetXactID(nXactID);
    SetTransactionType(TRANSACTION);
  }
};
wxIMPLEMENT_DYNAMIC_CLASS(COddRefresh, CXact);

class COdd : public CSSBenchmark {
 public:
  int RegisterTransactions(int) override {
    for (CXact* pXact : std::initializer_list<CXact*>{
             new CUndeclared, new COddLoad, new COddRefresh(kPropertiesID), new COddRefresh(kSequenceID)})
      AddXact(pXact);
    return 1;
  }
};

extern "C" int GetBenchmarkClassInfo(CSSBenchmark** benchmark) {
  *benchmark = new COdd;
  return 1;
}
