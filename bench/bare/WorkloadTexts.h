// SPDX-License-Identifier: Apache-2.0
// The statements of the workload's transactions, made beforehand: texts as the plug-in writes them for
// Oracle, and as the OCI library hands them to the server, with the same values. The values are those of rows
// that the table holds. Immutable once made.
#pragma once

#include <string>
#include <vector>

#include "bench/bare/Session.h"

namespace bare {

enum class Kind { kNumber, kText, kDate };

struct Column {
  std::string name;  // upper case
  Kind kind;
};

// One value as text ("" of a NULL) and, of a number, as that.
struct Value {
  bool is_null;
  std::string text;
  double number;
};

class WorkloadTexts {
 public:
  WorkloadTexts(Session& session, const std::string& table);

  const std::vector<Column>& Columns() const { return m_columns; }
  const std::vector<Value>& Row(size_t i) const { return m_rows[i % m_rows.size()]; }

  std::string Describe() const { return "SELECT * FROM " + m_table; }
  std::string OracleInsert() const;  // INSERT INTO … VALUES (:ID, TO_DATE(:COLUMN1, '…'), …)
  std::string ServerInsert() const;  // INSERT INTO … VALUES (?, ?, …)
  // Of one of the first rows: it takes the values of another one.
  const std::string& OracleUpdate(size_t i) const { return m_oracle_updates[i % m_oracle_updates.size()]; }
  const std::string& ServerUpdate(size_t i) const { return m_server_updates[i % m_server_updates.size()]; }
  std::string Delete(size_t id) const {
    return "delete from " + m_table + " where id = " + std::to_string(id);
  }

 private:
  void ReadRows(Session& session);
  std::string Update(size_t id, const char* before_date, const char* behind_date) const;

  std::string m_table;
  std::vector<Column> m_columns;
  std::vector<std::vector<Value>> m_rows;
  std::vector<std::string> m_oracle_updates, m_server_updates;
};

inline constexpr char kNextId[] = "SELECT LK_REP_ID_SEQ.NEXTVAL FROM DUAL";

}  // namespace bare
