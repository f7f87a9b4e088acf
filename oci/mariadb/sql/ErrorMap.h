// SPDX-License-Identifier: Apache-2.0
// From an error of the server or its client library to Oracle's number and text. The arguments of the text
// are taken from the server's message where it has them. A number without a counterpart becomes ORA-28500,
// which carries a foreign system's own number and text. Pure function: any thread.
#pragma once

#include <oci.h>

#include <string_view>

#include "oci/mariadb/OraError.h"

namespace ocimaria::sql {

// What was being done; decides between related numbers and completes the names of a text.
struct ErrorContext {
  ub2 statement_type = OCI_STMT_UNKNOWN;
  bool is_ddl = false;
  bool is_block = false;
  bool no_wait = false;          // the statement asked not to wait for locks
  bool connecting = false;       // no session yet
  std::string_view schema = {};  // of the session
  std::string_view table = {};   // that the statement changes
};

OraError MapServerError(unsigned number, std::string_view message, const ErrorContext& context = {});

// A check of this name stands in for the length of a text column: its failure is a value too large. The
// column's name follows.
inline constexpr std::string_view kLengthCheckPrefix = "ora$len$";

}  // namespace ocimaria::sql
