// SPDX-License-Identifier: Apache-2.0
// The statement handle: its text as rewritten for the server, its binds and defines, what it is described as
// and how far it has been executed and fetched. The work on it lives beside it (Execute.h, Fetch.h,
// Describe.h). One thread at a time; it keeps the connection that it was last executed on.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "oci/mariadb/Bind.h"
#include "oci/mariadb/Define.h"
#include "oci/mariadb/Description.h"
#include "oci/mariadb/Handles.h"
#include "oci/mariadb/ParameterBatch.h"
#include "oci/mariadb/ParsedText.h"
#include "oci/mariadb/PreparedStatement.h"
#include "oci/mariadb/ResultRows.h"
#include "oci/mariadb/sql/ErrorMap.h"

namespace ocimaria {

// Placeholders that one bind means, from 0; mostly there is one.
struct Places {
  std::size_t first;
  std::vector<std::size_t> others;
};

class StatementHandle : public Handle {
 public:
  static constexpr ub4 kType = OCI_HTYPE_STMT;
  StatementHandle() : Handle(kType) {}
  ~StatementHandle() override { ClosePrepared(); }  // its binds and defines went before it

  // Takes a new text and drops everything of the old one. No round trip. Throws OraError.
  void Prepare(std::string_view text);
  bool IsPrepared() const { return m_is_prepared; }
  void RequirePrepared() const;                       // throws OraError 24337
  const std::string& Text() const { return m_text; }  // as the caller wrote it
  const ParsedText& Parsed() const { return *m_parsed; }
  const sql::Rewritten& Sql() const { return m_parsed->sql; }  // as the server gets it
  ub2 StatementType() const { return m_type; }

  // The placeholders that a bind means: a position counts from 1; in a block each name has one position,
  // elsewhere each occurrence has its own. Throws OraError 1036.
  Places PlacesAt(ub4 position) const;
  Places PlacesNamed(std::string_view name) const;
  void SetBind(const Places& places, const std::shared_ptr<BindHandle>& bind);
  ub4 BindCount() const { return static_cast<ub4>(Sql().placeholders.size()); }

  // One column for each placeholder, to be used before the next Prepare or bind. Throws OraError 1008 when
  // one is not bound.
  std::vector<ParameterColumn> ParameterColumns();

  void SetDefine(ub4 position, const std::shared_ptr<DefineHandle>& define);  // position from 1
  const std::vector<std::shared_ptr<DefineHandle>>& Defines() const { return m_defines; }

  // Chooses the connection for what follows; what an earlier one had prepared is closed. REQUIRES: the caller
  // holds no CallScope.
  void UseConnection(const std::shared_ptr<Connection>& connection);
  Connection& Session() { return *m_connection; }
  sql::ErrorContext FailureContext() const;  // what the server's errors are told by
  PreparedStatement& Prepared();             // on that connection; made at first use

  std::shared_ptr<const Description> description;  // null until described or executed
  std::unique_ptr<ResultRows> rows;                // of a query that has been executed
  bool executed = false;
  ub8 row_count = 0;
  ub4 rows_fetched = 0;  // by the last fetch
  ub4 dml_errors = 0;    // failed elements of the last execute with OCI_BATCH_ERRORS
  ub2 parse_error_offset = 0;

 private:
  static const std::shared_ptr<const ParsedText>& NoText();
  void Release();  // what the old text left
  void Replace(std::size_t place, const std::shared_ptr<BindHandle>& bind);
  void ClosePrepared();

  bool m_is_prepared = false;
  std::string m_text;
  ub2 m_type = OCI_STMT_UNKNOWN;  // known of a text that cannot be prepared, too
  std::shared_ptr<const ParsedText> m_parsed = NoText();
  std::vector<std::shared_ptr<BindHandle>> m_binds;      // by placeholder
  std::vector<std::shared_ptr<DefineHandle>> m_defines;  // by position, from 0; some null
  std::shared_ptr<Connection> m_connection;
  std::unique_ptr<PreparedStatement> m_prepared;
};

}  // namespace ocimaria
