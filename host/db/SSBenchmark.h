// SPDX-License-Identifier: Apache-2.0
// CSSBenchmark is one benchmark: its identity, its scale and the transactions that it registered, which it
// owns. Set up and torn down on the host's loading thread; read by all while a run lasts.
#pragma once

#include <wx/object.h>

#include <memory>
#include <vector>

#include "core/LKString.h"
#include "core/TRKArray.h"

class CXact;

class CSSBenchmark : public wxObject {
  wxDECLARE_DYNAMIC_CLASS(CSSBenchmark);

 public:
  CSSBenchmark();
  ~CSSBenchmark() override;
  CSSBenchmark(const CSSBenchmark&) = delete;
  CSSBenchmark& operator=(const CSSBenchmark&) = delete;

  // Slot order is part of the contract.
  virtual int RegisterTransactions(int bSetup);  // 1; the base registers none
  virtual CXact* GetNewXactByID(
      int nXactID);  // a new, unbound copy of the registered one (caller owns), or null
  virtual int GetPropertyPages(CTRKPtrArray* pPages, int nFlags);  // 0: no pages

  void SetName(const wchar_t* szName) { m_szName = szName; }
  void SetBenchmarkID(int nID) { m_nBenchmarkID = nID; }
  void SetDriverID(int nID) { m_nDriverID = nID; }
  const LKString& GetName() const { return m_szName; }
  int GetBenchmarkID() const { return m_nBenchmarkID; }
  int GetDriverID() const { return m_nDriverID; }

  void AddXact(CXact* pXact);  // takes ownership; the order of the calls is the order of the list
  int GetXactCount() const { return static_cast<int>(m_Xacts.size()); }
  CXact* GetXact(int nIndex) const;  // null outside 0..count-1

  double GetBenchmarkScale() const { return m_fScale; }
  void SetBenchmarkScale(double fScale) { m_fScale = fScale; }

 private:
  LKString m_szName;
  int m_nBenchmarkID = 0;
  int m_nDriverID = 0;
  double m_fScale = 1.0;
  std::vector<std::unique_ptr<CXact>> m_Xacts;
};
