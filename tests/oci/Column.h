// SPDX-License-Identifier: Apache-2.0
// What a query describes as, read through the exported calls.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Client.h"

namespace oci_test {

struct Column {
  std::string name;
  int type = 0, size = 0, precision = 0, scale = 0, nullable = 0;
  int char_used = 0, char_size = 0, form = 0, fsprecision = 0, lfprecision = 0;
};

// Checks on the way that no attribute is written wider than it is.
Column ColumnOf(Client& client, Statement& statement, ub4 position);

// The columns of a query, described only. A failure is one of the test, and gives none.
std::vector<Column> DescribeQuery(Client& client, std::string_view query);

}  // namespace oci_test
