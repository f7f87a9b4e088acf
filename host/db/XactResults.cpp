// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <filesystem>
#include <string>

#include "core/LKConfig.h"
#include "db/Xact.h"

int CXact::CalculateResults(unsigned int nMilliseconds) {
  if (nMilliseconds == 0) return 0;
  m_Results.m_fRate = static_cast<double>(m_Results.m_nExecutions) * 1000.0 / nMilliseconds;
  return 1;
}

void CXact::ClearResults() {
  CXactResults cleared;
  cleared.m_nTimedExecutions = m_Results.m_nTimedExecutions;
  cleared.m_nMinTime = m_Results.m_nMinTime;
  cleared.m_nMaxTime = m_Results.m_nMaxTime;
  m_Results = cleared;
}

void CXact::ClearDistributions() {
  m_Results.m_nTimedExecutions = 0;
  m_Results.m_nMinTime = 0;
  m_Results.m_nMaxTime = 0;
}

int CXact::GetXactResults(CXactResults* pResults) {
  if (pResults == nullptr) return 0;
  *pResults = m_Results;
  return 1;
}

int CXact::PostExecute() {
  ++m_Results.m_nExecutions;
  if (m_nExecuteResult == 0) ++m_Results.m_nFailures;
  if (m_Timer.IsStarted() && m_Timer.IsEnded()) BookTime();
  if (m_ResultsFile.is_open()) WriteResultsLine();
  m_nExecuteResult = 1;
  return 1;
}

void CXact::BookTime() {
  const __int64 nTime = m_Timer.GetEnd() - m_Timer.GetStart();
  m_Results.m_nRows += m_Timer.GetRows();
  m_Results.m_nBytes += m_Timer.GetBytes();
  m_Results.m_nTotalTime += nTime;
  const bool bFirst = m_Results.m_nTimedExecutions++ == 0;
  m_Results.m_nMinTime = bFirst ? nTime : std::min(m_Results.m_nMinTime, nTime);
  m_Results.m_nMaxTime = bFirst ? nTime : std::max(m_Results.m_nMaxTime, nTime);
}

int CXact::OpenResultsFile(int nUserID) {
  const LKString szFolder = LKGetConfig()->GetProfileString(L"Results", L"Directory", L".");
  const std::string name = "xact_" + std::to_string(m_nXactID) + "_user_" + std::to_string(nUserID) + ".csv";
  m_ResultsFile.close();
  m_ResultsFile.clear();
  m_ResultsFile.open(std::filesystem::path(szFolder.ToChar()) / name, std::ios::trunc);
  m_ResultsFile << "execution,result,start_ns,response_ns,end_ns,rows,bytes\n";
  return m_ResultsFile.good() ? 1 : 0;
}

void CXact::WriteResultsLine() {
  m_ResultsFile << m_Results.m_nExecutions << ',' << m_nExecuteResult << ',' << m_Timer.GetStart() << ','
                << m_Timer.GetResponse() << ',' << m_Timer.GetEnd() << ',' << m_Timer.GetRows() << ','
                << m_Timer.GetBytes() << '\n';
}

int CXact::CloseResultsFile() {
  if (!m_ResultsFile.is_open()) return 0;
  m_ResultsFile.close();
  return m_ResultsFile.good() ? 1 : 0;
}
