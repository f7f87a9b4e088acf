// SPDX-License-Identifier: Apache-2.0
#include "ScriptedOci.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "Journal.h"
#include "ScriptedState.h"

namespace scripted {

namespace {

const char* TypeName(ub4 type) {
  switch (type) {
    case OCI_HTYPE_ENV:
      return "env";
    case OCI_HTYPE_ERROR:
      return "err";
    case OCI_HTYPE_SVCCTX:
      return "svc";
    case OCI_HTYPE_STMT:
      return "stmt";
    case OCI_HTYPE_BIND:
      return "bind";
    case OCI_HTYPE_DEFINE:
      return "def";
    case OCI_HTYPE_SERVER:
      return "srv";
    case OCI_HTYPE_SESSION:
      return "ses";
    case OCI_DTYPE_PARAM:
      return "par";
    default:
      return "handle";
  }
}

bool StartsWith(const std::string& text, const std::string& prefix) { return text.rfind(prefix, 0) == 0; }

bool IsCounted(const Handle& handle) {
  return handle.type != OCI_HTYPE_BIND && handle.type != OCI_HTYPE_DEFINE && handle.type != OCI_DTYPE_PARAM;
}

bool IsQuery(const std::string& sql) { return StartsWith(sql, "SELECT") || StartsWith(sql, "select"); }

Cell CellOf(const BindState& bind, ub4 row) {
  const auto* indicator = static_cast<const char*>(bind.indicator);
  if (indicator != nullptr) {
    sb2 value = 0;
    std::memcpy(&value, indicator + static_cast<size_t>(row) * bind.indicator_skip, sizeof value);
    if (value == OCI_IND_NULL) return std::nullopt;
  }
  const char* at = static_cast<const char*>(bind.value) + static_cast<size_t>(row) * bind.value_skip;
  if (bind.type != SQLT_FLT) return std::string(at, strnlen(at, static_cast<size_t>(bind.size)));
  double number = 0;
  std::memcpy(&number, at, sizeof number);
  char text[40];
  std::snprintf(text, sizeof text, "%.17g", number);
  return std::string(text);
}

void Deliver(const BindState& define, const Cell& cell) {
  if (define.indicator != nullptr) {
    const bool cut = cell && define.type == SQLT_STR && cell->size() >= static_cast<size_t>(define.size);
    const sb2 value = static_cast<sb2>(!cell ? -1 : cut ? -2 : 0);
    std::memcpy(define.indicator, &value, sizeof value);
  }
  if (!cell) return;
  if (define.type == SQLT_FLT) {
    const double number = std::strtod(cell->c_str(), nullptr);
    std::memcpy(define.value, &number, sizeof number);
  } else if (define.type == SQLT_INT) {
    const long number = std::strtol(cell->c_str(), nullptr, 10);
    std::memcpy(define.value, &number, static_cast<size_t>(define.size));
  } else {
    const size_t length = std::min(cell->size(), static_cast<size_t>(define.size) - 1);
    std::memcpy(define.value, cell->data(), length);
    static_cast<char*>(define.value)[length] = '\0';
  }
}

}  // namespace

ScriptedOci::ScriptedOci() = default;
ScriptedOci::~ScriptedOci() = default;

ScriptedOci& Oci() {
  static ScriptedOci oci;
  return oci;
}

Fault OraFault(sb4 code, const std::string& text) { return {OCI_ERROR, code, text}; }

void ScriptedOci::Reset() {
  const std::lock_guard lock(m_mutex);
  ClearCalls();
  m_handles.clear();
  m_numbers.clear();
  m_violations.clear();
  m_faults.clear();
  m_actions.clear();
  m_descriptions.clear();
  m_answers.clear();
  m_counters.clear();
  m_rowCounts.clear();
  m_refusals.clear();
}

std::vector<std::string> ScriptedOci::Calls() const {
  const std::lock_guard lock(m_mutex);
  std::vector<std::string> texts;
  for (const auto& [name, arguments] : m_calls) texts.push_back(name + "(" + arguments + ")");
  return texts;
}

std::vector<std::string> ScriptedOci::CallNames() const {
  const std::lock_guard lock(m_mutex);
  std::vector<std::string> names;
  for (const auto& call : m_calls) names.push_back(call.first);
  return names;
}

int ScriptedOci::CountCalls(const std::string& name) const {
  const std::lock_guard lock(m_mutex);
  return static_cast<int>(std::ranges::count(m_calls, name, [](const auto& call) { return call.first; }));
}

void ScriptedOci::ClearCalls() {
  const std::lock_guard lock(m_mutex);
  m_calls.clear();
  m_struck.clear();
  m_executions.clear();
}

std::vector<std::string> ScriptedOci::ExecutedSql() const {
  const std::lock_guard lock(m_mutex);
  std::vector<std::string> texts;
  for (const Execution& execution : m_executions) texts.push_back(execution.sql);
  return texts;
}

void ScriptedOci::FailAnyCall(int nth, Fault fault) { m_faults.push_back({"", "", nth, std::move(fault)}); }

void ScriptedOci::FailFrom(int nth, Fault fault) {
  m_faults.push_back({"", "", nth, std::move(fault), true});
}

void ScriptedOci::FailCall(const std::string& name, int nth, Fault fault) {
  m_faults.push_back({name, "", nth, std::move(fault)});
}

void ScriptedOci::FailSql(const std::string& prefix, int nth, Fault fault) {
  m_faults.push_back({"OCIStmtExecute", prefix, nth, std::move(fault)});
}

void ScriptedOci::After(const std::string& name, int nth, std::function<void()> action) {
  m_actions.push_back({name, nth, std::move(action)});
}

void ScriptedOci::ClearFaults() { m_faults.clear(); }

void ScriptedOci::Describe(const std::string& sql, std::vector<ColumnSpec> columns) {
  m_descriptions[sql] = std::move(columns);
}

void ScriptedOci::Answer(const std::string& sql, std::vector<ResultSet> results) {
  m_counters.erase(sql);
  m_answers[sql] = std::move(results);
}

void ScriptedOci::AnswerCounting(const std::string& sql, long start) { m_counters[sql] = start; }

void ScriptedOci::RowCounts(const std::string& prefix, std::vector<ub4> counts) {
  m_rowCounts.emplace_back(prefix, std::move(counts));
}

void ScriptedOci::Refuse(const std::string& sql, sb4 code) { m_refusals[sql] = code; }

int ScriptedOci::Live(ub4 type) const {
  const std::lock_guard lock(m_mutex);
  return static_cast<int>(
      std::ranges::count_if(m_handles, [&](const auto& h) { return h->live && h->type == type; }));
}

int ScriptedOci::Live() const {
  const std::lock_guard lock(m_mutex);
  return static_cast<int>(
      std::ranges::count_if(m_handles, [](const auto& h) { return h->live && IsCounted(*h); }));
}

std::string ScriptedOci::NameOf(const void* pointer) const {
  const std::lock_guard lock(m_mutex);
  for (const auto& handle : m_handles)
    if (handle.get() == pointer) return TypeName(handle->type) + ("#" + std::to_string(handle->number));
  return "foreign";
}

std::vector<std::string> ScriptedOci::Violations() const {
  const std::lock_guard lock(m_mutex);
  return m_violations;
}

Recorder::Recorder(const char* name, std::initializer_list<std::string> arguments)
    : m_oci(Oci()), m_lock(m_oci.m_mutex), m_name(name) {
  std::string joined;
  for (const std::string& argument : arguments) joined += (joined.empty() ? "" : ", ") + argument;
  m_oci.m_calls.emplace_back(m_name, joined);
  Journal::Note(m_name + "(" + joined + ")");
}

Recorder::~Recorder() {
  std::vector<std::function<void()>> due;
  std::erase_if(m_oci.m_actions, [&](ScriptedOci::PendingAction& pending) {
    if (pending.name != m_name || --pending.countdown > 0) return false;
    due.push_back(std::move(pending.action));
    return true;
  });
  for (const auto& action : due) action();
}

Handle* Recorder::Find(const void* pointer) {
  for (const auto& handle : m_oci.m_handles)
    if (handle.get() == pointer) return handle.get();
  return nullptr;
}

Handle* Recorder::GetAny(const void* pointer) {
  if (pointer == nullptr) return nullptr;
  Handle* handle = Find(pointer);
  if (handle != nullptr && handle->live) return handle;
  m_oci.m_violations.push_back(m_name + ": " + (handle != nullptr ? "freed " : "foreign ") + Name(pointer));
  return nullptr;
}

Handle* Recorder::Get(const void* pointer, ub4 type) {
  Handle* handle = GetAny(pointer);
  if (handle == nullptr || handle->type == type) return handle;
  m_oci.m_violations.push_back(m_name + ": " + Name(pointer) + " is no " + TypeName(type));
  return nullptr;
}

bool Recorder::Fails(const void* error, sword& status, const std::string& sql) {
  for (auto pending = m_oci.m_faults.begin(); pending != m_oci.m_faults.end(); ++pending) {
    if (!pending->name.empty() && pending->name != m_name) continue;
    if (pending->name.empty() && m_name == "OCIErrorGet") continue;
    if (!StartsWith(sql, pending->sql_prefix)) continue;
    if (--pending->countdown > 0) continue;
    const Fault fault = pending->fault;
    if (!pending->stays) m_oci.m_faults.erase(pending);
    m_oci.m_struck.push_back(m_oci.m_calls.size() - 1);
    Leave(error, fault);
    status = fault.status;
    return !fault.works;
  }
  return false;
}

void Recorder::RequireText(const Handle& statement) {
  const std::string_view text(statement.text_given, statement.sql.size());
  if (text != statement.sql)
    m_oci.m_violations.push_back(m_name + ": the text of " + Name(&statement) + " is gone");
}

Handle* Recorder::Create(ub4 type, Handle* parent) {
  auto handle = std::make_unique<Handle>();
  handle->type = type;
  handle->number = ++m_oci.m_numbers[type];
  handle->parent = parent;
  m_oci.m_handles.push_back(std::move(handle));
  return m_oci.m_handles.back().get();
}

void Recorder::Free(Handle* handle) {
  handle->live = false;
  for (const auto& other : m_oci.m_handles)
    if (other->live && other->parent == handle) Free(other.get());
}

void Recorder::Leave(const void* error, const Fault& fault) {
  if (fault.code != 0)
    Error(error, fault.code, fault.text);
  else if (Handle* handle = Find(error); handle != nullptr)
    handle->code = 0;
}

sword Recorder::Error(const void* error, sb4 code, const std::string& text) {
  Handle* handle = Find(error);
  if (handle != nullptr && handle->type == OCI_HTYPE_ERROR) {
    char number[24];
    std::snprintf(number, sizeof number, "ORA-%05d: ", code);
    handle->code = code;
    handle->text = number + text + "\n";
  }
  return OCI_ERROR;
}

std::vector<std::vector<Cell>> Recorder::BoundRows(const Handle* statement, ub4 iters) const {
  std::vector<std::vector<Cell>> rows;
  if (statement->binds.empty()) return rows;
  for (ub4 row = 0; row < iters; ++row) {
    std::vector<Cell> cells;
    for (const auto& bind : statement->binds) cells.push_back(CellOf(bind.second->bind, row));
    rows.push_back(std::move(cells));
  }
  return rows;
}

ub4 Recorder::NextRowCount(const std::string& sql, ub4 iters) {
  for (auto& [prefix, counts] : m_oci.m_rowCounts) {
    if (!StartsWith(sql, prefix)) continue;
    if (counts.empty()) return 0;
    const ub4 count = counts.front();
    counts.erase(counts.begin());
    return count;
  }
  return iters;
}

ResultSet Recorder::NextResult(const std::string& sql) {
  if (const auto counter = m_oci.m_counters.find(sql); counter != m_oci.m_counters.end())
    return {{std::to_string(counter->second++)}};
  const auto answer = m_oci.m_answers.find(sql);
  if (answer == m_oci.m_answers.end() || answer->second.empty()) return {};
  const ResultSet result = answer->second.front();
  if (answer->second.size() > 1) answer->second.erase(answer->second.begin());
  return result;
}

sword Recorder::Run(Handle* statement, ub4 iters, ub4 mode, const void* error) {
  Execution execution{statement->sql, iters, mode, OCI_SUCCESS, BoundRows(statement, iters)};
  sword status = OCI_SUCCESS;
  if (Fails(error, status, statement->sql)) {
    statement->row_count = 0;
  } else if (const sword result = Work(statement, iters, mode, error); result != OCI_SUCCESS) {
    status = result;
  }
  execution.status = status;
  m_oci.m_executions.push_back(std::move(execution));
  return status;
}

sword Recorder::Work(Handle* statement, ub4 iters, ub4 mode, const void* error) {
  if (const auto found = m_oci.m_refusals.find(statement->sql); found != m_oci.m_refusals.end())
    return Error(error, found->second, "refused");
  if (mode & OCI_DESCRIBE_ONLY) {
    const auto found = m_oci.m_descriptions.find(statement->sql);
    if (found == m_oci.m_descriptions.end()) return Error(error, 942, "table or view does not exist");
    statement->columns = found->second;
    return OCI_SUCCESS;
  }
  if (IsQuery(statement->sql)) return RunQuery(statement, iters, error);
  statement->row_count = NextRowCount(statement->sql, iters);
  return OCI_SUCCESS;
}

sword Recorder::RunQuery(Handle* statement, ub4 iters, const void* error) {
  statement->pending = NextResult(statement->sql);
  statement->next_row = 0;
  statement->row_count = 0;
  if (const auto found = m_oci.m_descriptions.find(statement->sql); found != m_oci.m_descriptions.end()) {
    statement->columns = found->second;
  } else {
    statement->columns.clear();
    const size_t width = statement->pending.empty() ? 1 : statement->pending.front().size();
    for (size_t i = 0; i < width; ++i)
      statement->columns.push_back({"C" + std::to_string(i + 1), SQLT_CHR, 100, 0, 0, 1});
  }
  return iters == 0 ? OCI_SUCCESS : Fetch(statement, iters, error);
}

sword Recorder::Fetch(Handle* statement, ub4 rows, const void* error) {
  statement->rows_fetched = 0;
  while (statement->rows_fetched < rows && statement->next_row < statement->pending.size()) {
    const auto& cells = statement->pending[statement->next_row++];
    for (const auto& [position, define] : statement->defines) {
      BindState target = define->bind;
      const size_t offset = static_cast<size_t>(statement->rows_fetched);
      target.value = static_cast<char*>(target.value) + offset * static_cast<size_t>(target.size);
      if (target.indicator != nullptr) target.indicator = static_cast<char*>(target.indicator) + offset * 2;
      Deliver(target, position <= cells.size() ? cells[position - 1] : Cell{});
    }
    ++statement->rows_fetched;
    ++statement->row_count;
  }
  if (statement->rows_fetched == rows) return OCI_SUCCESS;
  Error(error, 1403, "no data found");
  return OCI_NO_DATA;
}

std::string Name(const void* handle) { return handle == nullptr ? "null" : Oci().NameOf(handle); }

std::string Ptr(const void* pointer) {
  const auto number = reinterpret_cast<std::uintptr_t>(pointer);
  if (number == 0) return "null";
  return number < 4096 ? std::to_string(number) : "&";
}

std::string Quoted(const OraText* text, size_t length) {
  if (text == nullptr) return "null";
  return "\"" + std::string(reinterpret_cast<const char*>(text), length) + "\"";
}

}  // namespace scripted
