// SPDX-License-Identifier: Apache-2.0
// What the scripted calls share: handles, and the Recorder that brackets each call (locks, writes the call
// down, checks handles, looks for a fault that is due, runs what is to follow the call).
#pragma once

#include <initializer_list>

#include "ScriptedOci.h"

namespace scripted {

struct BindState {
  void* value = nullptr;
  sb4 size = 0;
  ub2 type = 0;
  void* indicator = nullptr;
  ub4 value_skip = 0;
  ub4 indicator_skip = 0;
};

struct Handle {
  ub4 type = 0;
  int number = 0;
  bool live = true;
  Handle* parent = nullptr;
  // statement
  std::string sql;
  const char* text_given = nullptr;  // where the caller keeps it, to be read until the last execute
  bool described = false;
  std::vector<ColumnSpec> columns;
  std::map<ub4, Handle*> binds;
  std::map<ub4, Handle*> defines;
  ResultSet pending;
  size_t next_row = 0;
  ub4 row_count = 0;
  ub4 rows_fetched = 0;
  // bind, define
  BindState bind;
  // parameter
  ColumnSpec column;
  // error
  sb4 code = 0;
  std::string text;
};

struct ScriptedOci::PendingFault {
  std::string name;        // empty: any call
  std::string sql_prefix;  // not empty: an execute of such a text
  int countdown = 1;
  Fault fault;
  bool stays = false;  // fires at every call from then on
};

struct ScriptedOci::PendingAction {
  std::string name;
  int countdown = 1;
  std::function<void()> action;
};

class Recorder {
 public:
  Recorder(const char* name, std::initializer_list<std::string> arguments);
  ~Recorder();  // runs the actions that wait for this call

  // The handle behind the pointer when it is live and of that type; else null, and a violation unless the
  // pointer itself is null.
  Handle* Get(const void* pointer, ub4 type);
  Handle* GetAny(const void* pointer);
  // True when a fault is due for this call: `status` is then what the call returns. One that works leaves its
  // status there too, for a call that goes on and succeeds.
  bool Fails(const void* error, sword& status, const std::string& sql = {});
  // Reads the statement's text again where the caller gave it, as a client library may.
  void RequireText(const Handle& statement);
  Handle* Create(ub4 type, Handle* parent);
  void Free(Handle* handle);
  sword Error(const void* error, sb4 code, const std::string& text);  // leaves a record, returns OCI_ERROR
  sword Run(Handle* statement, ub4 iters, ub4 mode, const void* error);
  sword Fetch(Handle* statement, ub4 rows, const void* error);

 private:
  void Leave(const void* error, const Fault& fault);  // its record, or none
  sword Work(Handle* statement, ub4 iters, ub4 mode, const void* error);
  sword RunQuery(Handle* statement, ub4 iters, const void* error);
  std::vector<std::vector<Cell>> BoundRows(const Handle* statement, ub4 iters) const;
  ub4 NextRowCount(const std::string& sql, ub4 iters);
  ResultSet NextResult(const std::string& sql);
  Handle* Find(const void* pointer);

  ScriptedOci& m_oci;
  std::unique_lock<std::recursive_mutex> m_lock;
  std::string m_name;
};

std::string Name(const void* handle);  // "stmt#1", "null", "?" for a foreign pointer
std::string Ptr(const void* pointer);  // "null", the number for a tiny value, else "&"
std::string Quoted(const OraText* text, size_t length);

}  // namespace scripted
