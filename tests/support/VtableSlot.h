// SPDX-License-Identifier: Apache-2.0
// The place of a virtual function in its class's table, by the Itanium C++ ABI: a pointer to a virtual member
// function holds 1 + 8 × slot. The destructor takes two slots.
#pragma once

#include <cstddef>
#include <cstring>

template <class MemberFunction>
std::ptrdiff_t VtableSlot(MemberFunction function) {
  std::ptrdiff_t raw[2] = {0, 0};
  static_assert(sizeof function == sizeof raw, "a pointer to a member function is a pointer and an offset");
  std::memcpy(raw, &function, sizeof raw);
  return raw[0] % 2 == 1 ? (raw[0] - 1) / static_cast<std::ptrdiff_t>(sizeof(void*)) : -1;
}
