// SPDX-License-Identifier: Apache-2.0
// Rules of the schema that several transactions follow.
#pragma once

#include "core/LKTypes.h"
#include "db/BenchmarkProperties.h"

constexpr int kRowsPerScale = 1000;  // rows of each table per unit of scale

// The rows that each table has at a scale; a part of a row is cut off.
inline __int64 RowsOf(double fScale) { return static_cast<__int64>(kRowsPerScale * fScale); }

// The last ID that a random row of the workload may have. kept: the scale is cut to whole units first, so the
// rows of a part of a unit are never drawn.
inline int LastRandomRow(double fScale) { return static_cast<int>(fScale) * kRowsPerScale; }

// The number of the first table that this run works on.
inline int GetFirstTableNumber(const CBenchmarkProperties& properties) {
  const int nStartTableID = properties.GetIntAttribute1();
  return nStartTableID > 0 ? nStartTableID : 1;
}
