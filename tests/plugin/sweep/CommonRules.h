// SPDX-License-Identifier: Apache-2.0
// Rules that operations share: of the driver's statements and queries, of a table's describe and of its
// loader. All of them say what the operation's own failure is; the rest they know.
#pragma once

#include "FaultSweep.h"

namespace sweep {

// A failed OCI call that is reported without a word of the caller.
inline constexpr char kOwnReport[] = "ERROR %N: ";

// Handles and descriptors that cannot be freed are no failure of an operation.
Rules Frees();
// A statement that starts so, from its allocation to its execution.
Rules Statement(const std::string& text, const Effect& failure);
// A statement of the driver: reported as one that cannot be run, then as `after` says.
Rules DriverStatement(const std::string& text, const Effect& after);
// The same for a DROP TABLE: a table that is missing has been dropped.
Rules DriverDrop(const std::string& text, const Effect& after);
// A query of the driver; `no_rows` is what an empty result means to the operation.
Rules DriverQuery(const std::string& text, const Effect& after, std::optional<Effect> no_rows);
// The columns of a table are learnt: `after` follows on the describe's own report.
Rules Describe(const Effect& after);
// The loader of a table is made and bound; a failed prepare or bind is not reported.
Rules Loader(int owned);
Rules LoaderSend(int owned);

// The effect with a report before its own ones.
Effect ReportedFirst(const std::string& report, Effect effect);

}  // namespace sweep
