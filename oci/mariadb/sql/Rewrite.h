// SPDX-License-Identifier: Apache-2.0
// Turns one Oracle statement into the text that MariaDB, in a session set up by SessionSettings.h, runs with
// the same effect. A pure function over text, in time linear in its length: no connection, no state, any
// thread. What needs no change comes back as it stands. docs/oracle_sql.md lists what is rewritten.
#pragma once

#include <oci.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ocimaria::sql {

// One placeholder of the rewritten text, in the order of its question marks.
struct Placeholder {
  std::string name;  // upper case, without the colon
  std::string
      date_mask;  // the mask of the TO_DATE or TO_TIMESTAMP that stood around it; empty: bound as it is
};

struct Rewritten {
  std::string text;  // MariaDB's text, with question marks
  std::vector<Placeholder> placeholders;
  ub2 type = OCI_STMT_UNKNOWN;  // OCI_STMT_*
  bool is_empty = false;        // nothing but blanks and comments
  bool is_ddl = false;          // commits before and after (TRUNCATE included)
  bool is_block = false;        // BEGIN, DECLARE: undone whole when it fails midway
  bool is_query = false;        // has a result set
  bool draws_sequence = false;  // contains NEXTVAL: its lock is wanted until the DML that follows
  bool locks_rows = false;      // SELECT … FOR UPDATE: holds what it locked until the transaction ends
  bool no_wait = false;         // … NOWAIT: a lock that is held elsewhere is an error at once
  std::string target_table;     // that an INSERT, UPDATE, DELETE or DDL of a table names, upper case
};

// A rewritten text is at most this many times as long as the statement: views of the dictionary are long.
inline constexpr std::size_t kMostGrowth = 512;

// The OCI_STMT_* of a text, as far as its words tell it: for a text that Rewrite refuses, too. Never throws.
ub2 StatementType(std::string_view oracle_sql);

// Throws OraError: ORA-01756 for an open quote, ORA-00911 for a semicolon outside a block and for marks that
// are none of Oracle's, ORA-03001 with a text that says what cannot be had here, and the errors of types,
// dates and definitions that can be told without a server. Text of blanks and comments comes
// back as an empty statement of type UNKNOWN.
Rewritten Rewrite(std::string_view oracle_sql);

}  // namespace ocimaria::sql
