// SPDX-License-Identifier: Apache-2.0
// An error as a trace may show it: without any value that was bound or stored. Pure function: any thread.
#pragma once

#include <string>

#include "oci/mariadb/OraError.h"

namespace ocimaria::trace {

// "ORA-00942: table or view does not exist; server 1146: Table 'bench.T' doesn't exist". An error of the
// library itself has its place in the source in place of the server's number and text. Where the server's
// text may hold a value, it is left out and what the ORA text would take from it is "...".
std::string ErrorText(const OraError& error);

}  // namespace ocimaria::trace
