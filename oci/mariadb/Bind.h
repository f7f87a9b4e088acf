// SPDX-License-Identifier: Apache-2.0
// What a caller said about one placeholder. Values are bound by reference: they are read at each execute, and
// element i of every array lies at base + i x skip, a skip of 0 included.
// Owned by its statement; one thread at a time.
#pragma once

#include <oci.h>

#include <cstring>
#include <optional>

#include "oci/mariadb/Handles.h"

namespace ocimaria {

class BindHandle : public Handle {
 public:
  static constexpr ub4 kType = OCI_HTYPE_BIND;
  BindHandle() : Handle(kType) {}

  // Throws OraError 3115 for a type that cannot be bound or a size that does not suit it.
  void Set(void* values, sb4 size, ub2 type, void* indicators, const ub2* lengths, ub2* codes);
  void SetSkips(ub4 value, ub4 indicator, ub4 length, ub4 code);

  ub2 DataType() const { return m_type; }
  std::size_t Size() const { return m_size; }
  const char* Value(ub4 row) const { return m_values + std::size_t{row} * m_value_skip; }
  bool IsNull(ub4 row) const;  // a negative indicator
  std::optional<std::size_t> Length(ub4 row) const;
  void SetCode(ub4 row, ub2 code) const;

 private:
  const char* m_values = nullptr;
  const char* m_indicators = nullptr;
  const char* m_lengths = nullptr;
  char* m_codes = nullptr;
  std::size_t m_size = 0;
  ub2 m_type = 0;
  ub4 m_value_skip = 0, m_indicator_skip = 0, m_length_skip = 0, m_code_skip = 0;
};

// In sight of their callers, which ask for every value of an array.
inline bool BindHandle::IsNull(ub4 row) const {
  if (!m_indicators) return m_values == nullptr;
  sb2 indicator = 0;
  std::memcpy(&indicator, m_indicators + std::size_t{row} * m_indicator_skip, sizeof indicator);
  return indicator < 0 || !m_values;
}

inline std::optional<std::size_t> BindHandle::Length(ub4 row) const {
  if (!m_lengths) return std::nullopt;
  ub2 length = 0;
  std::memcpy(&length, m_lengths + std::size_t{row} * m_length_skip, sizeof length);
  return length;
}

}  // namespace ocimaria
