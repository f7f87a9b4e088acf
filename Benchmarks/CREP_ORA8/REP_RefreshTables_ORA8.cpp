// SPDX-License-Identifier: Apache-2.0
#include "StdAfx.h"

#include "REP_RefreshTables_ORA8.h"

#include <algorithm>
#include <cstring>

#include "OciCall.h"
#include "SchemaRules.h"

wxIMPLEMENT_DYNAMIC_CLASS(CREP_Refresh_Base, CXact);
wxIMPLEMENT_DYNAMIC_CLASS(CREP_RefreshTable_ORA8, CREP_Refresh_Base);
wxIMPLEMENT_DYNAMIC_CLASS(CREP_Refresh_Properties_Table, CREP_Refresh_Base);
wxIMPLEMENT_DYNAMIC_CLASS(CREP_Refresh_Sequence, CREP_Refresh_Base);

namespace {

// kept: execute and the row count take "success with information" as a success, unlike every other call, and
// compare the whole status: high bits alone fail, though there is nothing to report then.
bool IsWorseThanInfo(sword nStatus) { return static_cast<ub4>(nStatus) > OCI_SUCCESS_WITH_INFO; }

}  // namespace

CREP_Refresh_Base::~CREP_Refresh_Base() = default;

int CREP_Refresh_Base::GetRowInfo(__int64&, __int64&) { return 0; }

int CREP_Refresh_Base::Execute(char const* lpSQL) {
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return -1;
  OCIError* pError = pDriver->GetOCIError();
  sword nStatus = OCI_SUCCESS;
  if (m_pstmt == nullptr) nStatus = AllocStatement(pDriver, &m_pstmt);
  if (!IsFailure(nStatus)) nStatus = PrepareText(m_pstmt, pError, std::string_view(lpSQL));
  if (IsFailure(nStatus)) {
    pDriver->HandleError(LowBits(nStatus), pError, 0, 0);
    return -1;
  }
  nStatus = ExecuteOnce(pDriver, m_pstmt, OCI_COMMIT_ON_SUCCESS);
  if (IsWorseThanInfo(nStatus)) {
    pDriver->HandleError(LowBits(nStatus), pError, 0, 0);
    return -1;
  }
  return ReadRowCount(pDriver);
}

int CREP_Refresh_Base::ReadRowCount(COracle8Driver* pDriver) {
  ub4 nRowsAffect = 0;
  // kept: the number 4 stands in place of the size pointer; OCI never writes the size of an attribute whose
  // size is fixed.
  const sword nStatus = OCIAttrGet(m_pstmt, OCI_HTYPE_STMT, &nRowsAffect, reinterpret_cast<ub4*>(sizeof(ub4)),
                                   OCI_ATTR_ROW_COUNT, pDriver->GetOCIError());
  if (IsWorseThanInfo(nStatus)) {
    // kept: alone in the refresh this status is reported whole.
    pDriver->HandleError(nStatus, pDriver->GetOCIError(), 0, 0);
    return -1;
  }
  return static_cast<int>(nRowsAffect);  // kept: a count of all bits becomes the -1 of a failure
}

int CREP_Refresh_Base::Execute() {
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return 0;
  __int64 iStartRows = 0;
  __int64 iTotalRows = 0;
  GetRowInfo(iStartRows, iTotalRows);  // kept: the result is not looked at, the counts decide
  // kept: exactly 0, and without a look at a cancel; a table is emptied in one statement.
  if (iStartRows == 0) {
    m_strSQL.Format(L"TRUNCATE TABLE %s", m_strTableName);
    return Execute(m_strSQL.ToChar().c_str()) == -1 ? 0 : 1;
  }
  m_strSQL.Format(L"DELETE FROM %s WHERE ID IN (SELECT ID FROM %s WHERE ID > %lld AND ROWNUM <=%d)",
                  m_strTableName, m_strTableName, iStartRows, m_iRowsPerBatch);
  return DeleteInBatches(pDriver, iTotalRows - iStartRows);
}

int CREP_Refresh_Base::DeleteInBatches(COracle8Driver* pDriver, __int64 iRows2Del) {
  const std::string szSQL = m_strSQL.ToChar();
  __int64 iTotalDeletedRows = 0;
  while (!CancelXact()) {
    const int nRowsAffect = Execute(szSQL.c_str());
    if (nRowsAffect == -1) return 0;
    iTotalDeletedRows += nRowsAffect;
    double fpercent = 100.0 * (static_cast<double>(iTotalDeletedRows) / static_cast<double>(iRows2Del));
    // kept: in this order of the arguments a not-a-number stays one, and the message shows it.
    fpercent = std::min(fpercent, 100.0);
    LKString strMsg;
    strMsg.Format(L"Refresh Table %s (%3.2f%%) was completed.", m_strTableName, fpercent);
    pDriver->HandleInfoMsg(strMsg, 0);
    if (nRowsAffect < m_iRowsPerBatch) return 1;  // kept: a full last batch needs one more, of no rows
  }
  return 1;  // kept: a cancelled refresh is a success, the next one goes on where it ended
}

int CREP_Refresh_Base::PostBenchmark() {
  // kept: the pointer is not set back to null, and the base version is not called; a copy runs once.
  if (m_pstmt != nullptr) OCIHandleFree(m_pstmt, OCI_HTYPE_STMT);
  return 1;
}

CREP_RefreshTable_ORA8::CREP_RefreshTable_ORA8() {
  SetName(L"Refresh Replication Table");
  SetXactID(181);
  SetTransactionType(TRANSACTION);
}

CREP_RefreshTable_ORA8::~CREP_RefreshTable_ORA8() = default;

int CREP_RefreshTable_ORA8::PreBenchmark() {
  COracle8Driver* pDriver = AsOracleDriver(m_pDriver);
  if (pDriver == nullptr) return 0;
  m_TableArray.RemoveAll();
  const int nNumberOfTables = m_BenchmarkProperties.GetRepBenchmarkProperties().GetTableNumber();
  int nTableID = m_nUserID;
  // kept: at least once; a user without a table takes one that is not there, and its statement is reported.
  do {
    REP_ASSERT_AT(nTableID >= 1 && nTableID <= nNumberOfTables,
                  "nTableID >= 1 && nTableID <= nNumberOfTables", "REP_RefreshTables_ORA8", 64,
                  "PreBenchmark");
    LKString strTableName;
    strTableName.Format(L"LK_REP_TABLE%d", nTableID);
    AddTable(pDriver, strTableName);
    nTableID += m_nTotalUsers;
  } while (nTableID <= nNumberOfTables);
  return 1;
}

void CREP_RefreshTable_ORA8::AddTable(COracle8Driver* pDriver, const LKString& strTableName) {
  const bool bBackup =
      m_BenchmarkProperties.IsCreateUseBackup() && m_BenchmarkProperties.GetIntAttribute2() > 0;
  if (!bBackup)
    m_TableArray.Add(strTableName);
  else if (pDriver->BackupExists(strTableName))  // kept: a table without a backup is not refreshed at all
    m_TableArray.Add(strTableName + L"_BAK");
}

int CREP_RefreshTable_ORA8::Execute() {
  if (AsOracleDriver(m_pDriver) == nullptr) return 0;
  for (const LKString& strTableName : m_TableArray) {
    m_strTableName = strTableName;
    if (CREP_Refresh_Base::Execute() == 0) return 0;
  }
  return 1;
}

int CREP_RefreshTable_ORA8::GetRowInfo(__int64& iStartRows, __int64& iTotalRows) {
  iStartRows = RowsOf(m_BenchmarkProperties.GetCurrentScale());
  iTotalRows = RowsOf(m_BenchmarkProperties.GetLoadedMaxScale());
  return 1;
}

CREP_Refresh_Properties_Table::CREP_Refresh_Properties_Table() {
  SetName(L"Refresh Replication Properties");
  SetXactID(182);
  SetTransactionType(TRANSACTION);
}

CREP_Refresh_Properties_Table::~CREP_Refresh_Properties_Table() = default;

int CREP_Refresh_Properties_Table::Execute() {
  // kept: two blanks between the statements, likewise the blanks and tabs of the sequence's text.
  m_strSQL.Format(
      L"BEGIN UPDATE LK_REP_PROPERTIES SET PROP_VALUE = '%d' WHERE PROP_NAME = 'Number Of Tables'; "
      L" UPDATE LK_REP_PROPERTIES SET PROP_VALUE = '%d' WHERE PROP_NAME = 'Scale'; END;",
      m_BenchmarkProperties.GetRepBenchmarkProperties().GetTableNumber(),
      static_cast<int>(m_BenchmarkProperties.GetScale()));
  return CREP_Refresh_Base::Execute(m_strSQL.ToChar().c_str()) == -1 ? 0 : 1;
}

CREP_Refresh_Sequence::CREP_Refresh_Sequence() {
  SetName(L"Refresh Sequence");
  SetXactID(183);
  SetTransactionType(TRANSACTION);
}

CREP_Refresh_Sequence::~CREP_Refresh_Sequence() = default;

int CREP_Refresh_Sequence::Execute() {
  // kept: the scale of the settings here, that of the owning benchmark in the create of the sequence.
  const __int64 nStartID = RowsOf(m_BenchmarkProperties.GetScale()) + 1;
  m_strSQL.Format(
      L"DECLARE v_count number; "
      L"BEGIN SELECT COUNT(*) INTO v_count FROM USER_SEQUENCES WHERE SEQUENCE_NAME = 'LK_REP_ID_SEQ'; "
      L" IF v_count > 0 THEN "
      L"\t\tEXECUTE IMMEDIATE 'DROP SEQUENCE LK_REP_ID_SEQ'; "
      L" END IF; "
      L" EXECUTE IMMEDIATE 'CREATE SEQUENCE LK_REP_ID_SEQ START WITH %lld CACHE 100'; "
      L"END;",
      nStartID);
  return CREP_Refresh_Base::Execute(m_strSQL.ToChar().c_str()) == -1 ? 0 : 1;
}
