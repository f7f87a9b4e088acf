// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Execute.h"

#include "oci/mariadb/DescriptionCache.h"
#include "oci/mariadb/Fetch.h"
#include "oci/mariadb/Guard.h"
#include "oci/mariadb/ParseErrorOffset.h"
#include "oci/mariadb/ServerFailure.h"
#include "oci/mariadb/Session.h"
#include "oci/mariadb/TypeCache.h"

namespace ocimaria {
namespace {

constexpr ub4 kKnownModes = OCI_BATCH_MODE | OCI_EXACT_FETCH | OCI_DESCRIBE_ONLY | OCI_COMMIT_ON_SUCCESS |
                            OCI_BATCH_ERRORS | OCI_PARSE_ONLY;

// Prepares on the server and no more. What is no query has nothing to describe.
void DescribeOnly(StatementHandle& statement) {
  statement.description = std::make_shared<const Description>();
  if (!statement.Sql().is_query) return;
  InterruptibleWindow window(statement.Session().Calls());
  statement.Prepared().Prepare();
  statement.description = DescribeOrRecall(statement.Prepared(), statement.Text());
}

// A DDL has no parse of its own: Oracle runs it then, too.
void ParseOnly(StatementHandle& statement, const ExecuteRequest& request) {
  if (statement.Sql().is_ddl) return ExecuteText(statement, request);
  InterruptibleWindow window(statement.Session().Calls());
  statement.Prepared().Prepare();
}

sword ExecuteByKind(StatementHandle& statement, const ExecuteRequest& request, ErrorHandle& error) {
  const sql::Rewritten& sql = statement.Sql();
  if (sql.is_query) return ExecuteQuery(statement, request, error);
  if (sql.is_block) {
    ExecuteBlock(statement, request);
    return OCI_SUCCESS;
  }
  if (sql.is_ddl && !sql.placeholders.empty()) throw OraError(1027);
  if (!sql.placeholders.empty()) return ExecuteBound(statement, request, error);
  ExecuteText(statement, request);
  return OCI_SUCCESS;
}

// Forgets what the last execution left, so that a failure leaves nothing stale.
void Reset(StatementHandle& statement, ErrorHandle& error) {
  statement.row_count = 0;
  statement.rows_fetched = 0;
  statement.dml_errors = 0;
  statement.parse_error_offset = 0;
  error.rows.clear();
}

}  // namespace

sword Execute(StatementHandle& statement, const ExecuteRequest& request, ErrorHandle& error) {
  Reset(statement, error);
  if (request.Has(OCI_DESCRIBE_ONLY)) {
    DescribeOnly(statement);
    return OCI_SUCCESS;
  }
  if (request.Has(OCI_PARSE_ONLY)) {
    ParseOnly(statement, request);
    return OCI_SUCCESS;
  }
  if (statement.Sql().is_empty) throw OraError(900);
  if (!statement.Sql().is_query && request.first >= request.end) throw OraError(24333);
  const sword status = ExecuteByKind(statement, request, error);
  statement.executed = true;
  if (request.Has(OCI_COMMIT_ON_SUCCESS) && statement.dml_errors == 0) statement.Session().CommitIfOpen();
  return status;
}

void ExecuteText(StatementHandle& statement, const ExecuteRequest& request) {
  Connection& connection = statement.Session();
  const sql::Rewritten& sql = statement.Sql();
  if (sql.type == OCI_STMT_COMMIT || sql.type == OCI_STMT_ROLLBACK) {
    connection.Run(sql.text);
    return;
  }
  const ForgetTypesAfter forget(sql.is_ddl);
  if (!sql.is_ddl) connection.NoteWork();
  for (ub4 element = request.first; element < request.end; ++element) {
    InterruptibleWindow window(connection.Calls());
    const std::uint64_t matched = connection.Run(sql.text);
    if (!sql.is_ddl) statement.row_count += matched;
  }
}

}  // namespace ocimaria

using namespace ocimaria;

extern "C" sword OCIStmtPrepare(OCIStmt* stmtp, OCIError* errhp, const OraText* stmt, ub4 stmt_len,
                                ub4 language, ub4 mode) {
  return Guarded(OCI_CALL(stmtp, errhp, stmt, stmt_len, language, mode), errhp, [&](ErrorHandle&) -> sword {
    auto& statement = Need<StatementHandle>(stmtp);
    if (!stmt || language == 0 || mode != OCI_DEFAULT) throw OraError(24323);
    statement.Prepare({reinterpret_cast<const char*>(stmt), stmt_len});
    return OCI_SUCCESS;
  });
}

extern "C" sword OCIStmtExecute(OCISvcCtx* svchp, OCIStmt* stmtp, OCIError* errhp, ub4 iters, ub4 rowoff,
                                const OCISnapshot*, OCISnapshot*, ub4 mode) {
  return Guarded(OCI_CALL(svchp, stmtp, errhp, iters, rowoff, mode), errhp, [&](ErrorHandle& error) -> sword {
    auto& service = Need<ServiceHandle>(svchp);
    auto& statement = Need<StatementHandle>(stmtp);
    statement.RequirePrepared();
    if ((mode & ~kKnownModes) != 0) throw OraError(24300);
    const auto connection = service.LiveConnection();
    statement.UseConnection(connection);
    CallScope scope(*connection);
    try {
      return Execute(statement, {rowoff, iters, mode}, error);
    } catch (const ServerFailure& failure) {
      statement.parse_error_offset = ParseErrorOffset(statement.Text(), failure);
      throw ToOraError(failure, statement.FailureContext());
    }
  });
}
