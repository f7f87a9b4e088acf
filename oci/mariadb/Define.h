// SPDX-License-Identifier: Apache-2.0
// What a caller said about one column of a result: where its values go. Row i of a fetch goes to element i of
// the arrays, which lie one value size (or two bytes) apart. Owned by its statement; one thread at a time.
#pragma once

#include <oci.h>

#include "oci/mariadb/Handles.h"

namespace ocimaria {

struct OutputElement {
  char* value;
  std::size_t size;
  ub2 type;
  sb2* indicator;  // these three may be null
  ub2* length;
  ub2* code;
};

class DefineHandle : public Handle {
 public:
  static constexpr ub4 kType = OCI_HTYPE_DEFINE;
  DefineHandle() : Handle(kType) {}

  // Throws OraError 3115 for a type that cannot be defined or a size that does not suit it.
  void Set(void* values, sb4 size, ub2 type, void* indicators, ub2* lengths, ub2* codes);

  OutputElement Element(ub4 row) const;

 private:
  OutputElement m_first{};
};

}  // namespace ocimaria
