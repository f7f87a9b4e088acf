// SPDX-License-Identifier: Apache-2.0
// What a call throws, as its Oracle number.
#pragma once

#include "oci/mariadb/OraError.h"

namespace ocimaria {

// 0 when it throws nothing.
template <class Call>
int OraErrorOf(Call&& call) {
  try {
    call();
  } catch (const OraError& error) {
    return error.Code();
  }
  return 0;
}

}  // namespace ocimaria
