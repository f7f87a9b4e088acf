// SPDX-License-Identifier: Apache-2.0
// How this lkbench was built.
#pragma once

namespace lkbench {

#ifdef __OPTIMIZE__
inline constexpr bool kIsOptimised = true;  // without it, figures are not representative
#else
inline constexpr bool kIsOptimised = false;
#endif

}  // namespace lkbench
