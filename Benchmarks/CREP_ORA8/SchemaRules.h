// SPDX-License-Identifier: Apache-2.0
// Rules of the schema that several transactions follow.
#pragma once

#include "db/BenchmarkProperties.h"

constexpr double kRowsPerScale = 1000.0;  // rows of each table per unit of scale

// The number of the first table that this run works on.
inline int GetFirstTableNumber(const CBenchmarkProperties& properties) {
  const int nStartTableID = properties.GetIntAttribute1();
  return nStartTableID > 0 ? nStartTableID : 1;
}
