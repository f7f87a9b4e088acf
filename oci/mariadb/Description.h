// SPDX-License-Identifier: Apache-2.0
// What a select list describes as: one entry for each column, with the values and widths of an implicit
// describe. Parameter handles share a description and outlive a new one of their statement.
// Immutable once made: any thread.
#pragma once

#include <oci.h>

#include <memory>
#include <string>
#include <vector>

#include "oci/mariadb/Handles.h"
#include "oci/mariadb/sql/OracleType.h"

namespace ocimaria {

struct ColumnDescription {
  std::string name;
  sql::TypeDescription type;
  ub1 nullable = 1;
};

using Description = std::vector<ColumnDescription>;

class ParameterHandle : public Handle {
 public:
  static constexpr ub4 kType = OCI_DTYPE_PARAM;
  ParameterHandle(std::shared_ptr<const Description> description, std::size_t column)
      : Handle(kType), m_description(std::move(description)), m_column(column) {}

  const ColumnDescription& Column() const { return (*m_description)[m_column]; }

 private:
  const std::shared_ptr<const Description> m_description;
  const std::size_t m_column;
};

}  // namespace ocimaria
