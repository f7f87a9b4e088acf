// SPDX-License-Identifier: Apache-2.0
// CTRKGUID is a 128-bit identifier; CBlankTRKGUID is the one that is all zero. Value types.
#pragma once

#include <array>
#include <cstdint>

class CTRKGUID {
 public:
  CTRKGUID();  // a new random identifier (RFC 9562, version 4)
  ~CTRKGUID();
  CTRKGUID(const CTRKGUID&) = default;
  CTRKGUID& operator=(const CTRKGUID&) = default;

  void Clear();
  bool IsBlank() const;
  bool operator==(const CTRKGUID&) const = default;

 private:
  std::array<std::uint8_t, 16> m_Data{};
};

class CBlankTRKGUID : public CTRKGUID {
 public:
  CBlankTRKGUID() { Clear(); }
};
