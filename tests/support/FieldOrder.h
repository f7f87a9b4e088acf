// SPDX-License-Identifier: Apache-2.0
// The place of fields in an object, for classes whose layout others are built against.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

// The distances of the fields from the object's begin.
template <class Object>
std::vector<std::ptrdiff_t> Offsets(const Object& object, const std::vector<const void*>& fields) {
  std::vector<std::ptrdiff_t> offsets;
  for (const void* field : fields)
    offsets.push_back(static_cast<const char*>(field) - reinterpret_cast<const char*>(&object));
  return offsets;
}

// True when the fields follow one another in this order, behind the first `base` bytes and inside the object.
template <class Object>
bool AreInOrder(const Object& object, std::size_t base, const std::vector<const void*>& fields) {
  const std::vector<std::ptrdiff_t> offsets = Offsets(object, fields);
  return std::ranges::adjacent_find(offsets, std::ranges::greater_equal()) == offsets.end() &&
         offsets.front() >= static_cast<std::ptrdiff_t>(base) &&
         offsets.back() < static_cast<std::ptrdiff_t>(sizeof(Object));
}
