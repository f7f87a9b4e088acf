// SPDX-License-Identifier: Apache-2.0
// The declared Oracle types of columns, as CREATE TABLE left them in the columns' comments. They are read
// once for each table and shape of select list and kept for the process. What empties the cache: any DDL of
// this process, and the beginning of any session. A table that another process makes anew in between is read
// again when the server's metadata for it differs, which a prepare tells; where it does not (NUMBER(9) and
// NUMBER(7,-2) are stored alike) its old types are told until then. Any thread.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "oci/mariadb/PreparedStatement.h"

namespace ocimaria {

// Comments by column name in lower case.
using ColumnComments = std::map<std::string, std::string, std::less<>>;

// The comments of the columns of one table that stand in the statement's select list. `table` is the field of
// any of them. Round trips: one when they are not known yet.
ColumnComments CommentsOf(PreparedStatement& statement, const MYSQL_FIELD& table);

void ForgetTypes();

// Counts the times that the cache was emptied: while it stays, no declared type has been found changed.
std::uint64_t TypeGeneration();

// Empties the cache when it goes out of scope, if asked to.
class ForgetTypesAfter {
 public:
  explicit ForgetTypesAfter(bool wanted) : m_wanted(wanted) {}
  ~ForgetTypesAfter();
  ForgetTypesAfter(const ForgetTypesAfter&) = delete;
  ForgetTypesAfter& operator=(const ForgetTypesAfter&) = delete;

 private:
  const bool m_wanted;
};

}  // namespace ocimaria
