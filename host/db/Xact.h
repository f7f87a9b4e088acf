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

// kept: names in two spellings, as hosts and scripts know them.
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

// What a transaction copy has done since ClearResults. Times are nanoseconds from start to end; an execution
// whose timer was reset instead of ended has none and adds no rows.
class CXactResults {
 public:
  __int64 m_nExecutions = 0;
  __int64 m_nFailures = 0;
  __int64 m_nRows = 0;
  __int64 m_nBytes = 0;
  __int64 m_nTotalTime = 0;  // summed
  double m_fRate = 0.0;      // executions per second, from CalculateResults

  // The spread of the times, since ClearDistributions.
  __int64 m_nTimedExecutions = 0;
  __int64 m_nMinTime = 0;
  __int64 m_nMaxTime = 0;
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
  virtual int Execute();  // the base runs its next child transaction; 1 when it has none
  virtual int CalculateResults(unsigned int nMilliseconds);  // the rate over that much time; 0 for no time
  virtual int CanSearchReplace() { return 0; }
  // The number of replacements. The base holds no text of its own to search and asks its children.
  virtual int GlobalSearchReplace(LKString& szFind, LKString& szReplace, int bMatchCase, int bWholeWord);
  virtual void ClearResults();  // the counts; the spread of the times stays
  virtual void ClearDistributions();
  virtual int GetXactResults(CXactResults* pResults);  // 0 for a null pointer
  virtual void SetDriver(CDriverBase* pDriver) { m_pDriver = pDriver; }
  virtual void SetBenchmark(CSSBenchmark* pBenchmark) { m_pBenchmark = pBenchmark; }
  // Makes the copy ready for a run: its user, its random stream, cleared results. pStart (not owned, may be
  // null) is the event that PreExecute looks at. 0 when the user is not within 1..nTotalUsers.
  virtual int InitializeForTest(LKEvent_* pStart, int nUserID, int nTotalUsers, int nSeed);
  // One CSV line per PostExecute, in the folder of setting "Directory" in section "Results" (default: the
  // current one), named after the transaction's id and the user. 0 when the file cannot be written.
  virtual int OpenResultsFile(int nUserID);
  virtual int CloseResultsFile();  // 1 when a file was open and holds all that was written to it
  virtual int PreExecute();        // 0 while the start event is still to be signalled
  virtual int PostExecute();       // books the timer's last execution into the results
  virtual int PreBenchmark();      // 1, likewise the two below: the base has nothing to do
  virtual int PostBenchmark();
  virtual int PreIteration();
  virtual int PostIteration() { return 1; }
  virtual int IsUserXact() { return 0; }
  virtual int IsInUserXact();
  virtual CXact* GetNextXactToExecute();  // a child drawn by weight; null when none has a weight above 0
  virtual void SetScriptEngine(wxObject* pEngine) { m_pScriptEngine = pEngine; }
  virtual LKString GetScript() { return {}; }
  virtual int GetXactCount() { return static_cast<int>(m_ChildXacts.GetCount()); }
  virtual CXactArray& GetXacts() { return m_ChildXacts; }
  virtual LKString GetFileName() { return {}; }
  virtual int ConvertToSQLStatement() { return 0; }
  virtual LKString GetPreparedSQLName() { return {}; }
  virtual void SetFreeAfterExecute(int) {}
  virtual int IsFreeAfterExecute() { return 0; }
  virtual LKString GetDetailInformation();  // "name (transaction id, type n): description"
  virtual LKString GetExecuteSQL() { return {}; }
  CRestObject* GetNextObject(LKString szName) override;
  // Copies what describes the transaction: identity, weight, user load, settings. What binds a copy to its
  // run (driver, benchmark, user, cancel flag, timer, results, parent and children) stays.
  virtual CXact& operator=(const CXact& other);
  virtual int CopyObject(const CXact* pOther);  // 0 for a null pointer
  // As the base, and 400, with nothing changed, for a weight or user load below 0.
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
  CXact* GetParentXact() const { return m_pParentXact; }
  wxObject* GetScriptEngine() const { return m_pScriptEngine; }

  void AddChildXact(CXact* pChild);  // not owned; the child learns its parent
  void SetExecuteResult(int nResult) { m_nExecuteResult = nResult; }  // for the PostExecute that follows
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
  void BookTime();
  void WriteResultsLine();

  CXactResults m_Results;
  int m_nExecuteResult = 1;
  LKEvent_* m_pStartEvent = nullptr;
  std::ofstream m_ResultsFile;
  std::atomic<bool> m_bOwnCancel{false};
  std::atomic<bool>* m_pCancel = &m_bOwnCancel;
};
