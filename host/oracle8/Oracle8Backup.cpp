// SPDX-License-Identifier: Apache-2.0
// The backup operations: a table and its copy "…_BAK", by SQL that every supported server runs.
#include <algorithm>
#include <cwctype>

#include "oracle8/OciStatement.h"
#include "oracle8/Oracle8Driver.h"
#include "oracle8/SessionGuard.h"

using oracle8::OciSession;
using oracle8::OciStatement;

namespace {

constexpr int kTableMissing = 942;  // ORA-00942

// Keeps an error number on the driver's ignore list while it lives.
class IgnoredError {
 public:
  IgnoredError(CDriverBase& driver, int nCode) : m_driver(driver), m_nCode(nCode) {
    m_driver.AddIgnoreError(m_nCode);
  }
  ~IgnoredError() { m_driver.RemoveIgnoreError(m_nCode); }
  IgnoredError(const IgnoredError&) = delete;
  IgnoredError& operator=(const IgnoredError&) = delete;

 private:
  CDriverBase& m_driver;
  int m_nCode;
};

bool IsNameCharacter(wchar_t c) {
  return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z') || (c >= L'0' && c <= L'9') || c == L'_' ||
         c == L'$' || c == L'#';
}

// A plain identifier: what stands in statements without quotes.
bool IsTableName(const LKString& szName) {
  const std::wstring name = szName.c_str();
  return !name.empty() && std::iswalpha(static_cast<wint_t>(name[0])) != 0 &&
         std::ranges::all_of(name, IsNameCharacter);
}

LKString BackupName(const LKString& szTable) { return szTable + L"_BAK"; }

// The name as a literal, in capitals as the dictionary holds it.
LKString DictionaryLiteral(const LKString& szName) {
  std::wstring name = szName.c_str();
  std::ranges::transform(name, name.begin(), [](wchar_t c) {
    return static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
  });
  return (L"'" + name + L"'").c_str();
}

}  // namespace

int COracle8Driver::RunSQL(const LKString& szSQL) {
  return InSession(LKString(L"Cannot run: ") + szSQL, [&](OciSession& session) {
    OciStatement statement(session, szSQL);
    statement.Execute(1, OCI_COMMIT_ON_SUCCESS);
  });
}

int COracle8Driver::CanBackUp(const LKString& szTable) {
  if (IsTableName(szTable)) return 1;
  HandleErrorMsg(LKString(L"Not a table name: \"") + szTable +
                 L"\". Letters, digits, _, $ and # are possible, a letter first.");
  return 0;
}

int COracle8Driver::DropTable(const LKString& szTable) {
  const IgnoredError ignored(*this, kTableMissing);
  ClearLastErrorCode();
  if (RunSQL(LKString(L"DROP TABLE ") + szTable) != 0) return 1;
  if (GetLastErrorCode() != kTableMissing) return 0;
  ClearLastErrorCode();
  return 1;
}

int COracle8Driver::RenameTable(const LKString& szFrom, const LKString& szTo) {
  return RunSQL(LKString(L"ALTER TABLE ") + szFrom + L" RENAME TO " + szTo);
}

int COracle8Driver::LookUpTable(const LKString& szTable, int& bExists) {
  std::vector<std::vector<LKString>> rows;
  const LKString szSQL =
      LKString(L"SELECT COUNT(*) FROM USER_TABLES WHERE TABLE_NAME = ") + DictionaryLiteral(szTable);
  if (Query(szSQL, rows) == 0) return 0;
  bExists = !rows.empty() && rows[0].at(0).CompareNoCase(L"0") != 0;
  return 1;
}

// The key's columns as a list for ADD PRIMARY KEY; empty when the table has none.
int COracle8Driver::ReadPrimaryKey(const LKString& szTable, LKString& szColumns) {
  std::vector<std::vector<LKString>> rows;
  const LKString szSQL = LKString(
                             L"SELECT C.COLUMN_NAME FROM USER_CONSTRAINTS K, USER_CONS_COLUMNS C "
                             L"WHERE K.CONSTRAINT_TYPE = 'P' AND K.TABLE_NAME = ") +
                         DictionaryLiteral(szTable) +
                         L" AND C.CONSTRAINT_NAME = K.CONSTRAINT_NAME AND C.TABLE_NAME = K.TABLE_NAME "
                         L"ORDER BY C.POSITION";
  if (Query(szSQL, rows) == 0) return 0;
  for (const auto& row : rows) {
    szColumns += szColumns.IsEmpty() ? L"\"" : L", \"";
    szColumns += row.at(0);
    szColumns += L"\"";
  }
  return 1;
}

// CREATE TABLE AS SELECT keeps the columns and their NOT NULL, but not the key. A copy that cannot be given
// its key is dropped again: half a copy would pass for a whole one.
int COracle8Driver::CopyTable(const LKString& szFrom, const LKString& szTo, const LKString& szOptions,
                              const wchar_t* szWhere) {
  LKString szKey;
  if (ReadPrimaryKey(szFrom, szKey) == 0) return 0;
  LKString szSQL = LKString(L"CREATE TABLE ") + szTo;
  if (!szOptions.IsEmpty()) szSQL = szSQL + L" " + szOptions;
  if (RunSQL(szSQL + L" AS SELECT * FROM " + szFrom + szWhere) == 0) return 0;
  if (szKey.IsEmpty()) return 1;
  if (RunSQL(LKString(L"ALTER TABLE ") + szTo + L" ADD PRIMARY KEY (" + szKey + L")") != 0) return 1;
  const int nReason = GetLastErrorCode();
  DropTable(szTo);
  m_nLastErrorCode = nReason;
  return 0;
}

int COracle8Driver::PrepareRenameFromBackup(LKString szTable) {
  return CanBackUp(szTable) != 0 && DropTable(szTable) != 0;
}

int COracle8Driver::RenameToBackup(LKString szTable) {
  return CanBackUp(szTable) != 0 && DropTable(BackupName(szTable)) != 0 &&
         RenameTable(szTable, BackupName(szTable)) != 0;
}

int COracle8Driver::CreateBackupTable(LKString szTable, LKString szOptions) {
  return CanBackUp(szTable) != 0 && CopyTable(szTable, BackupName(szTable), szOptions, L" WHERE 1=0") != 0;
}

int COracle8Driver::RestoreFromBackup(LKString szTable) {
  int bExists = 0;
  if (CanBackUp(szTable) == 0 || LookUpTable(BackupName(szTable), bExists) == 0) return 0;
  if (bExists == 0) {
    HandleErrorMsg(LKString(L"Cannot restore table ") + szTable + L": it has no backup " +
                   BackupName(szTable) + L".");
    return 0;
  }
  return DropTable(szTable) != 0 && CopyTable(BackupName(szTable), szTable, LKString(), L"") != 0;
}

int COracle8Driver::BackupExists(LKString szTable) {
  int bExists = 0;
  return CanBackUp(szTable) != 0 && LookUpTable(BackupName(szTable), bExists) != 0 && bExists != 0;
}

int COracle8Driver::DropBackupTable(LKString szTable) {
  return CanBackUp(szTable) != 0 && DropTable(BackupName(szTable)) != 0;
}

int COracle8Driver::ChangeTableName(LKString szTable, int nDirection) {
  if (CanBackUp(szTable) == 0) return 0;
  const LKString szBackup = BackupName(szTable);
  return nDirection == 0 ? RenameTable(szBackup, szTable) : RenameTable(szTable, szBackup);
}
