// SPDX-License-Identifier: Apache-2.0
// Statements run by a process of their own, which knows nothing of what this one has cached.
#pragma once

#include <initializer_list>
#include <string>

#include "Contract.h"

namespace oci_test {

// Runs the texts in order, each committed. Throws when one fails.
void RunElsewhere(Transport transport, std::initializer_list<std::string> texts);

}  // namespace oci_test
