// SPDX-License-Identifier: Apache-2.0
// DML with binds, for one element or an array of them. An INSERT of rows travels in bulk. The server undoes a
// bulk INSERT whole when a row fails and does not say which: the rows are then sent again by halves until the
// failing one is found, so that the rows before it stay, as in Oracle. Other DML runs element by element.
#include "oci/mariadb/Execute.h"
#include "oci/mariadb/ServerFailure.h"
#include "oci/mariadb/TraceEvents.h"

namespace ocimaria {
namespace {

class ArrayExecution {
 public:
  ArrayExecution(StatementHandle& statement, const ExecuteRequest& request)
      : m_statement(statement),
        m_request(request),
        m_parameters(statement.ParameterColumns()),
        m_in_bulk(statement.Parsed().is_plain_insert) {}

  // Throws the error of the first element that fails, unless errors are collected.
  void Run() {
    ub4 next = m_request.first;
    while (next < m_request.end) {
      next = m_parameters.Fill(next, m_request.end);
      RunRows(0, m_parameters.Rows());
      if (!m_parameters.Problem()) continue;
      Report(*m_parameters.Problem());
      ++next;
    }
  }

  std::vector<RowError> TakeErrors() { return std::move(m_errors); }

 private:
  void RunRows(ub4 first, ub4 count) {
    if (m_in_bulk) return RunInBulk(first, count);
    for (ub4 row = first; row < first + count; ++row) RunInBulk(row, 1);
  }

  void RunInBulk(ub4 first, ub4 count) {
    if (count == 0) return;
    try {
      m_statement.row_count += Send(first, count);
    } catch (const ServerFailure& failure) {
      if (!failure.ConcernsRow()) throw;
      if (count == 1)
        return Report(
            {m_parameters.FirstElement() + first, ToOraError(failure, m_statement.FailureContext())});
      RunInBulk(first, count / 2);
      RunInBulk(first + count / 2, count - count / 2);
    }
  }

  std::uint64_t Send(ub4 first, ub4 count) {
    Connection& connection = m_statement.Session();
    connection.RequireRoomFor(m_parameters.Bytes());
    connection.NoteWork();
    InterruptibleWindow window(connection.Calls());
    if (count == 1) return m_statement.Prepared().Execute(m_parameters.Single(first), 0);
    return m_statement.Prepared().Execute(m_parameters.Array(first), count);
  }

  void Report(RowError error) {
    if (!m_request.Has(OCI_BATCH_ERRORS)) throw error.error;
    trace::RowFailed(error.row, error.error);
    m_errors.push_back(std::move(error));
  }

  StatementHandle& m_statement;
  const ExecuteRequest& m_request;
  ParameterBatch m_parameters;
  const bool m_in_bulk;
  std::vector<RowError> m_errors;
};

}  // namespace

sword ExecuteBound(StatementHandle& statement, const ExecuteRequest& request, ErrorHandle& error) {
  ArrayExecution execution(statement, request);
  execution.Run();
  error.rows = execution.TakeErrors();
  statement.dml_errors = static_cast<ub4>(error.rows.size());
  if (error.rows.empty()) return OCI_SUCCESS;
  error.Report(OraError(24381));
  return OCI_SUCCESS_WITH_INFO;
}

}  // namespace ocimaria
