// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Execute.h"
#include "oci/mariadb/ServerFailure.h"
#include "oci/mariadb/TypeCache.h"

namespace ocimaria {
namespace {

// The server keeps what a failed block had done; Oracle undoes the block whole. Where the transaction had
// done nothing before, that is all of it, and no savepoint is needed.
class BlockGuard {
 public:
  explicit BlockGuard(Connection& connection)
      : m_connection(connection), m_alone(!connection.HasUncommittedWork()) {
    if (!m_alone) m_connection.Run("SAVEPOINT lk_block");
  }

  void Undo() {
    if (m_connection.Lost()) return;
    if (m_alone) return m_connection.Rollback();
    try {
      m_connection.Run("ROLLBACK TO SAVEPOINT lk_block");
    } catch (const ServerFailure& failure) {
      if (!failure.MissingSavepoint()) throw;
      m_connection.Rollback();  // a commit or a DDL in the block took it: what is open now is all the block's
    }
  }

 private:
  Connection& m_connection;
  const bool m_alone;
};

void RunOnce(StatementHandle& statement, ParameterBatch& parameters, ub4 element) {
  Connection& connection = statement.Session();
  const sql::Rewritten& sql = statement.Sql();
  parameters.Fill(element, element + 1);
  if (parameters.Problem()) throw parameters.Problem()->error;
  connection.RequireRoomFor(parameters.Bytes());
  BlockGuard guard(connection);
  connection.NoteWork();
  try {
    InterruptibleWindow window(connection.Calls());
    if (sql.placeholders.empty())
      connection.Run(sql.text);
    else
      statement.Prepared().Execute(parameters.Single(0), 0);
  } catch (...) {
    guard.Undo();
    throw;
  }
}

}  // namespace

void ExecuteBlock(StatementHandle& statement, const ExecuteRequest& request) {
  const ForgetTypesAfter forget(true);  // a block may hold a DDL
  ParameterBatch parameters(statement.ParameterColumns());
  for (ub4 element = request.first; element < request.end; ++element) {
    RunOnce(statement, parameters, element);
    ++statement.row_count;  // executions, not rows
  }
}

}  // namespace ocimaria
