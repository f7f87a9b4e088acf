// SPDX-License-Identifier: Apache-2.0
#include "lkbench/App.h"

#ifdef LKBENCH_TCMALLOC
#include <gperftools/malloc_extension.h>
#endif

namespace {

// What the caches of all threads may hold. The allocator's own 32 MiB cost a user of a workload some 30 KiB
// more (own memory of 16 and of 128 users, three runs each).
void LimitThreadCaches() {
#ifdef LKBENCH_TCMALLOC
  constexpr std::size_t kMost = std::size_t{8} << 20;
  MallocExtension::instance()->SetNumericProperty("tcmalloc.max_total_thread_cache_bytes", kMost);
#endif
}

}  // namespace

int main(int argc, char** argv) {
  LimitThreadCaches();
  return lkbench::RunApp(argc, argv);
}
