// SPDX-License-Identifier: Apache-2.0
#include "core/TRKGUID.h"

#include <algorithm>
#include <cstring>
#include <random>

CTRKGUID::CTRKGUID() {
  std::random_device source;
  for (size_t nAt = 0; nAt < m_Data.size(); nAt += sizeof(unsigned int)) {
    const unsigned int nDraw = source();
    std::memcpy(m_Data.data() + nAt, &nDraw, sizeof nDraw);
  }
  m_Data[6] = static_cast<std::uint8_t>((m_Data[6] & 0x0F) | 0x40);  // version 4
  m_Data[8] = static_cast<std::uint8_t>((m_Data[8] & 0x3F) | 0x80);  // the variant of the RFC
}

CTRKGUID::~CTRKGUID() = default;

void CTRKGUID::Clear() { m_Data.fill(0); }

bool CTRKGUID::IsBlank() const {
  return std::ranges::all_of(m_Data, [](std::uint8_t nByte) { return nByte == 0; });
}
