// SPDX-License-Identifier: Apache-2.0
// One invocation of lkbench from its arguments to its exit code. Nothing is thrown out of it.
#pragma once

namespace lkbench {

int RunApp(int argc, const char* const* argv);

}  // namespace lkbench
