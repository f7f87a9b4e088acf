// SPDX-License-Identifier: Apache-2.0
// CXact is the base of every transaction. The runner gives each virtual user its own copies, bound to that
// user's driver (not owned) and benchmark (not owned); a copy is used by one thread, except CancelXact,
// RequestCancel and the row counter, which the runner may touch from another. Calls, in order: PreBenchmark,
// then PreIteration and Execute per iteration, PostBenchmark.
#pragma once

#include <wx/object.h>

#include <atomic>
#include <fstream>
#include <vector>

#include "core/LKArchive.h"
#include "core/LKString.h"
#include "core/LKTypes.h"
#include "core/Random.h"
#include "core/RestObject.h"
#include "core/TRKArray.h"
#include "core/Timer.h"
#include "db/BenchmarkProperties.h"
#include "db/DriverBase.h"
#include "db/SSBenchmark.h"

enum enumXactType {
  UNKNOWN = 0,
  QUERY = 1,
  randomQUERY = 2,
  inputQUERY = 3,
  TRANSACTION = 4,
  randomTRANSACTION = 5,
  inputTRANSACTION = 6,
  LOAD_TABLE = 7,
  CREATE_TABLE = 8,
  DROP_TABLE = 9,
  CREATE_INDEX = 10,
  DROP_INDEX = 11,
  CREATE_SP = 12,
  DROP_SP = 13,
  CREATE_VIEW = 14,
  DROP_VIEW = 15,
  EXT_FUNCTION = 16
};

// What a transaction copy has done since ClearResults.
class CXactResults {
 public:
  __int64 m_nExecutions = 0;
  __int64 m_nFailures = 0;
  __int64 m_nRows = 0;
  __int64 m_nBytes = 0;
  __int64 m_nTotalTime = 0;  // nanoseconds from start to end, summed
  double m_fRate = 0.0;      // executions per second, from CalculateResults
};

// A manual-reset event: the runner signals it, users wait for it.
struct LKEvent_ {
  std::atomic<bool> bSignalled{false};
};

class CXact;
using CXactArray = CTRKArray<CXact*, CXact*>;

class CXact : public wxObject, public CRestObject {
  wxDECLARE_DYNAMIC_CLASS(CXact);

 public:
  // Slot order below is part of the contract.
  CXact();
  CXact(const CXact& other);
  ~CXact() override;
  virtual void Serialize(CLKArchive& archive);
  virtual int SetProperty(LKString& szName,
                          LKString& szValue);  // 1 when the property exists and took the value
  virtual int SetChildObject(LKString& szName, LKString& szValue);  // 0: no child objects to set
  virtual int GetDriverType() { return m_nDriverType; }
  virtual int Execute();
  virtual int CalculateResults(unsigned int nMilliseconds);  // rates over that much time
  virtual int CanSearchReplace() { return 0; }
  virtual int GlobalSearchReplace(LKString& szFind, LKString& szReplace, int bMatchCase, int bWholeWord);
  virtual void ClearResults();
  virtual void ClearDistributions();
  virtual int GetXactResults(CXactResults* pResults);
  virtual void SetDriver(CDriverBase* pDriver) { m_pDriver = pDriver; }
  virtual void SetBenchmark(CSSBenchmark* pBenchmark) { m_pBenchmark = pBenchmark; }
  virtual int InitializeForTest(LKEvent_* pStart, int nUserID, int nTotalUsers, int nSeed);
  virtual int OpenResultsFile(int nUserID);
  virtual int CloseResultsFile();
  virtual int PreExecute() { return 1; }
  virtual int PostExecute();  // books the timer's last execution into the results
  virtual int PreBenchmark() { return 1; }
  virtual int PostBenchmark() { return 1; }
  virtual int PreIteration() { return 1; }
  virtual int PostIteration() { return 1; }
  virtual int IsUserXact() { return 0; }
  virtual int IsInUserXact();
  virtual CXact* GetNextXactToExecute();
  virtual void SetScriptEngine(wxObject* pEngine) { m_pScriptEngine = pEngine; }
  virtual LKString GetScript() { return {}; }
  virtual int GetXactCount() { return static_cast<int>(m_ChildXacts.GetCount()); }
  virtual CXactArray& GetXacts() { return m_ChildXacts; }
  virtual LKString GetFileName() { return {}; }
  virtual int ConvertToSQLStatement() { return 0; }
  virtual LKString GetPreparedSQLName() { return {}; }
  virtual void SetFreeAfterExecute(int) {}
  virtual int IsFreeAfterExecute() { return 0; }
  virtual LKString GetDetailInformation();
  virtual LKString GetExecuteSQL() { return {}; }
  CRestObject* GetNextObject(LKString szName) override;
  virtual CXact& operator=(const CXact& other);
  virtual int CopyObject(const CXact* pOther);
  int DoPut(Context context, LKString& szResponse) override;
  void GetPropertyTable(std::vector<REST_PROPERTY_ENTRY>& table) override;

  CDriverBase* GetDriver() const { return m_pDriver; }
  CSSBenchmark* GetBenchmark() const { return m_pBenchmark; }
  int GetUserID() const { return m_nUserID; }
  CTimer& GetTimer() { return m_Timer; }
  CRandom& GetRandomGenerator() { return m_Random; }
  CBenchmarkProperties& GetBenchmarkProperties() { return m_BenchmarkProperties; }
  const LKString& GetName() const { return m_szName; }
  const LKString& GetDescription() const { return m_szDescription; }
  int GetXactID() const { return m_nXactID; }
  int GetTransactionType() const { return m_nTransactionType; }
  int GetTotalUsers() const { return m_nTotalUsers; }
  int GetWeight() const { return m_nWeight; }
  int GetUserLoad() const { return m_nUserLoad; }
  __int64 GetRowsProcessed() const { return m_nRowsProcessed; }

  void SetName(const wchar_t* szName) { m_szName = szName; }
  void SetDescription(const wchar_t* szDescription) { m_szDescription = szDescription; }
  void SetXactID(int nID) { m_nXactID = nID; }
  void SetTransactionType(int nType) { m_nTransactionType = nType; }
  void SetUserID(int nUserID) { m_nUserID = nUserID; }
  void SetTotalUsers(int nUsers) { m_nTotalUsers = nUsers; }
  void SetWeight(int nWeight) { m_nWeight = nWeight; }
  void SetUserLoad(int nLoad) { m_nUserLoad = nLoad; }
  void SetBenchmarkProperties(const CBenchmarkProperties& properties) { m_BenchmarkProperties = properties; }

  int CancelXact() const { return m_pCancel->load(std::memory_order_relaxed) ? 1 : 0; }
  // Any thread. The flag may be shared: all copies of one run watch the runner's (not owned), once it is set.
  void RequestCancel() { m_pCancel->store(true, std::memory_order_relaxed); }
  void SetCancelFlag(std::atomic<bool>* pFlag) { m_pCancel = pFlag ? pFlag : &m_bOwnCancel; }

 protected:
  CDriverBase* m_pDriver = nullptr;
  CSSBenchmark* m_pBenchmark = nullptr;
  int m_nUserID = 0;  // 1-based
  LKString m_szName;
  LKString m_szDescription;
  int m_nXactID = 0;
  int m_nTransactionType = UNKNOWN;
  int m_nDriverType = 0;
  CBenchmarkProperties m_BenchmarkProperties;
  CTimer m_Timer;
  CRandom m_Random;
  __int64 m_nXactBytes = 0;
  int m_nTotalUsers = 1;
  int m_nSetNumber = 1;
  int m_nNumberOfSets = 1;
  std::atomic<__int64> m_nRowsProcessed{0};
  int m_nLastReadTime = 0;
  CXact* m_pParentXact = nullptr;
  CXactArray m_ChildXacts;
  int m_nWeight = 1;
  int m_nUserLoad = 0;

 private:
  wxObject* m_pScriptEngine = nullptr;
  CXactResults m_Results;
  LKEvent_* m_pStartEvent = nullptr;
  std::ofstream m_ResultsFile;
  std::atomic<bool> m_bOwnCancel{false};
  std::atomic<bool>* m_pCancel = &m_bOwnCancel;
};
