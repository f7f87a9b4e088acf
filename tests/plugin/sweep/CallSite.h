// SPDX-License-Identifier: Apache-2.0
// A call of the scripted OCI together with the statement text that it serves: what the rules of a fault sweep
// are keyed by.
#pragma once

#include <string>
#include <vector>

namespace sweep {

struct CallSite {
  std::string call;   // "OCIBindByPos"
  std::string whole;  // with its arguments, as the scripted OCI writes it down
  std::string text;   // of the statement; for an allocation that of the next prepare; else empty
};

// One for each of the calls, in their order.
std::vector<CallSite> CallSites(const std::vector<std::string>& calls);

}  // namespace sweep
