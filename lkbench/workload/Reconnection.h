// SPDX-License-Identifier: Apache-2.0
// What a user does that has lost its session. A value.
#pragma once

#include <chrono>

namespace lkbench {

enum class OnDisconnect { kReconnect, kStop };

// How a lost session is opened again: at once, then after a pause that doubles from `first` to `longest`.
struct Reconnection {
  OnDisconnect policy = OnDisconnect::kReconnect;
  std::chrono::nanoseconds first = std::chrono::milliseconds(100);
  std::chrono::nanoseconds longest = std::chrono::seconds(5);
};

}  // namespace lkbench
