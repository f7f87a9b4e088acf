// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Fetch.h"

#include <algorithm>

#include "oci/mariadb/DescriptionCache.h"
#include "oci/mariadb/Guard.h"
#include "oci/mariadb/ServerFailure.h"

namespace ocimaria {
namespace {

bool HasDefine(const StatementHandle& statement) {
  return std::ranges::any_of(statement.Defines(), [](const auto& define) { return define != nullptr; });
}

// One row into element `element`. Gives the number that the caller has to be told, or 0.
int DeliverRow(const StatementHandle& statement, ub4 element) {
  const auto& defines = statement.Defines();
  const std::size_t count = std::min(defines.size(), statement.rows->ColumnCount());
  int told = 0;
  for (std::size_t column = 0; column < count; ++column) {
    if (!defines[column]) continue;
    const int code = WriteValue(defines[column]->Element(element), statement.rows->Value(column));
    if (code != 0) told = code;
  }
  return told;
}

// A CHAR that is too long for the server's own is kept there without its blanks.
void PadCharacters(StatementHandle& statement) {
  const Description& columns = *statement.description;
  for (std::size_t i = 0; i < columns.size(); ++i)
    if (columns[i].type.data_type == SQLT_AFC) statement.rows->PadTo(i, columns[i].type.char_size);
}

void Send(StatementHandle& statement) {
  statement.rows.reset();
  PreparedStatement& prepared = statement.Prepared();
  ParameterBatch parameters(statement.ParameterColumns());
  parameters.Fill(0, 1);
  if (parameters.Problem()) throw parameters.Problem()->error;
  statement.Session().RequireRoomFor(parameters.Bytes());
  InterruptibleWindow window(statement.Session().Calls());
  prepared.Execute(parameters.Single(0), 0);
  statement.rows = std::make_unique<ResultRows>(prepared);
}

void RunQuery(StatementHandle& statement) {
  Connection& connection = statement.Session();
  try {
    Send(statement);
  } catch (const ServerFailure&) {
    connection.ReleaseReadLocksAfterFailure();
    throw;
  }
  if (statement.Sql().locks_rows) connection.NoteWork();
  if (!statement.Sql().draws_sequence) connection.ReleaseReadLocks();
}

}  // namespace

sword ExecuteQuery(StatementHandle& statement, const ExecuteRequest& request, ErrorHandle& error) {
  const bool wants_rows = request.end > 0;
  if (wants_rows && !HasDefine(statement)) throw OraError(24374);
  RunQuery(statement);
  statement.description = DescribeOrRecall(statement.Prepared(), statement.Text());
  PadCharacters(statement);
  statement.executed = true;
  statement.row_count = 0;
  statement.rows_fetched = 0;
  const std::uint64_t found = statement.rows->Count();
  const sword status = wants_rows ? FetchRows(statement, request.end, error) : OCI_SUCCESS;
  if (request.Has(OCI_EXACT_FETCH) && found > request.end) throw OraError(1422);
  return status;
}

sword FetchRows(StatementHandle& statement, ub4 count, ErrorHandle& error) {
  int told = 0;
  ub4 delivered = 0;
  statement.rows_fetched = 0;
  while (delivered < count && statement.rows->Next()) {
    if (const int code = DeliverRow(statement, delivered)) told = code;
    ++delivered;
    statement.rows_fetched = delivered;
    ++statement.row_count;
  }
  if (delivered < count) {
    error.Report(OraError(1403));
    return OCI_NO_DATA;
  }
  if (told == 0) return OCI_SUCCESS;
  error.Report(OraError(told));
  return OCI_SUCCESS_WITH_INFO;
}

}  // namespace ocimaria

using namespace ocimaria;

// Forward only; 0 rows give the result up.
extern "C" sword OCIStmtFetch2(OCIStmt* stmtp, OCIError* errhp, ub4 nrows, ub2 orientation, sb4, ub4) {
  return Guarded(OCI_CALL(stmtp, errhp, nrows, orientation), errhp, [&](ErrorHandle& error) -> sword {
    auto& statement = Need<StatementHandle>(stmtp);
    if (!statement.executed) throw OraError(24338);
    if (orientation != OCI_FETCH_NEXT && orientation != OCI_DEFAULT) throw OraError(24300);
    if (!statement.rows) throw OraError(1002);
    if (nrows == 0) {
      statement.rows.reset();
      return OCI_SUCCESS;
    }
    if (!HasDefine(statement)) throw OraError(24374);
    return FetchRows(statement, nrows, error);
  });
}
