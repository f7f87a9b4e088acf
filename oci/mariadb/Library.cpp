// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Library.h"

#include <mysql.h>

#include <mutex>

#include "oci/mariadb/OraError.h"

namespace ocimaria {
namespace {

struct ThreadUse {
  ThreadUse() { mysql_thread_init(); }
  ~ThreadUse() { mysql_thread_end(); }
};

}  // namespace

void UseClientLibrary() {
  static std::once_flag once;
  std::call_once(once, [] {
    if (mysql_library_init(0, nullptr, nullptr) != 0)
      throw OraError::WithText(12560, "TNS:protocol adapter error (Connector/C could not be initialised)");
  });
  thread_local ThreadUse use;
  static_cast<void>(use);
}

}  // namespace ocimaria
