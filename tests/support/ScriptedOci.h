// SPDX-License-Identifier: Apache-2.0
// A scripted OCI for tests: it defines every call of oci.h, records each with its arguments, answers as told
// and fails where told. One object per process (Oci()); any thread may call in, a test scripts it from one
// thread. Freed handles are remembered until Reset, so that a later use is recorded as a violation and never
// a crash.
#pragma once

#include <oci.h>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace scripted {

struct ColumnSpec {
  std::string name;
  ub2 type = SQLT_NUM;
  ub2 size = 22;
  sb2 precision = 0;
  sb1 scale = -127;
  ub1 nullable = 0;
};

// What a failing call returns, and the record that it leaves in the error handle (none when code is 0). One
// that works does what it is called for all the same: the status stands where it would have been OCI_SUCCESS.
struct Fault {
  sword status = OCI_ERROR;
  sb4 code = 0;
  std::string text = {};
  bool works = false;
};
Fault OraFault(sb4 code, const std::string& text = "scripted failure");
// A failure without a record: its report names the status that was passed on.
inline Fault StatusFault(sword status) { return {status, 0, ""}; }
// Two statuses with a high half: one that differs when it is masked, one that is no failure at all.
inline constexpr sword kHighStatus = 0x10005;
inline constexpr sword kLowBitsZero = 0x10000;

using Cell = std::optional<std::string>;  // text of a value; no value: NULL
using ResultSet = std::vector<std::vector<Cell>>;

// One OCIStmtExecute that ran (failed ones included), with the values bound at that moment. Doubles are
// written with %.17g, texts as they stand up to their zero byte.
struct Execution {
  std::string sql;
  ub4 iters = 0;
  ub4 mode = 0;
  sword status = OCI_SUCCESS;
  std::vector<std::vector<Cell>> rows;  // [row][position - 1]
};

struct Handle;

class ScriptedOci {
 public:
  void Reset();  // forgets everything, handles included

  // The record. Each call is one text, such as
  //   OCIStmtPrepare(stmt#1, err#1, "DROP TABLE T", 12, 1, 0)
  // with handles numbered by type from 1, null pointers as "null" and other pointers as "&". Output pointers
  // of created handles, value buffers and attribute buffers are left out. A password is written as "***".
  std::vector<std::string> Calls() const;
  std::vector<std::string> CallNames() const;
  int CountCalls(const std::string& name) const;
  void ClearCalls();  // also executions; handles and answers stay
  const std::vector<Execution>& Executions() const { return m_executions; }
  std::vector<std::string> ExecutedSql() const;

  // Faults. `nth` counts from 1 from this moment on; each fault fires once.
  void FailAnyCall(int nth, Fault fault);  // the nth call, whatever it is (OCIErrorGet is not counted)
  void FailFrom(int nth, Fault fault);     // the nth call, as counted above, and every one after it
  void FailCall(const std::string& name, int nth, Fault fault);
  void FailSql(const std::string& prefix, int nth, Fault fault);  // the nth execute of a text that starts so
  void After(const std::string& name, int nth, std::function<void()> action);  // runs when that call returns
  void ClearFaults();
  const std::vector<size_t>& Struck() const { return m_struck; }  // the places in Calls() where faults fired

  // Answers, by the statement's exact text.
  void Describe(const std::string& sql, std::vector<ColumnSpec> columns);
  void Answer(const std::string& sql, std::vector<ResultSet> results);  // one per execution; the last stays
  void AnswerCounting(const std::string& sql, long start);              // start, start + 1, … one row each
  void RowCounts(const std::string& prefix, std::vector<ub4> counts);   // one per execution, then 0
  void Refuse(const std::string& sql, sb4 code);  // every execution of the text fails with that number
  // Without an answer: a describe of an unknown text fails with ORA-00942, a query gives no rows, any other
  // statement has a row count of its iterations.

  // Balance.
  int Live(ub4 type) const;                      // handles of that type not freed
  int Live() const;                              // of all types, parameters, binds and defines left out
  std::string NameOf(const void* handle) const;  // "stmt#1"; "foreign" for a pointer that is no handle
  std::vector<std::string> Violations() const;   // uses of freed or foreign handles, double frees

 private:
  friend class Recorder;
  struct PendingFault;
  struct PendingAction;
  mutable std::recursive_mutex m_mutex;
  std::vector<std::unique_ptr<Handle>> m_handles;
  std::map<ub4, int> m_numbers;
  std::vector<std::pair<std::string, std::string>> m_calls;  // name, arguments
  std::vector<Execution> m_executions;
  std::vector<std::string> m_violations;
  std::vector<PendingFault> m_faults;
  std::vector<size_t> m_struck;
  std::map<std::string, sb4> m_refusals;
  std::vector<PendingAction> m_actions;
  std::map<std::string, std::vector<ColumnSpec>> m_descriptions;
  std::map<std::string, std::vector<ResultSet>> m_answers;
  std::map<std::string, long> m_counters;
  std::vector<std::pair<std::string, std::vector<ub4>>> m_rowCounts;

 public:
  ScriptedOci();
  ~ScriptedOci();
};

ScriptedOci& Oci();

}  // namespace scripted
