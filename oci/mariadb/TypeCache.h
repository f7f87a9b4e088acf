// SPDX-License-Identifier: Apache-2.0
// The declared Oracle types of columns, as CREATE TABLE left them in the columns' comments. They are read
// once for each table and shape of select list and kept for the process; any DDL of this process empties the
// cache, and a table that another process makes anew is read again as soon as the server's metadata for it
// differs. Any thread.
#pragma once

#include <map>
#include <string>

#include "oci/mariadb/PreparedStatement.h"

namespace ocimaria {

// Comments by column name in lower case.
using ColumnComments = std::map<std::string, std::string, std::less<>>;

// The comments of the columns of one table that stand in the statement's select list. `table` is the field of
// any of them. Round trips: one when they are not known yet.
ColumnComments CommentsOf(PreparedStatement& statement, const MYSQL_FIELD& table);

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
