// SPDX-License-Identifier: Apache-2.0
// A virtual user whose session is one over nothing, with a replication benchmark of four tables at scale 1 to
// bind transactions to. One object serves one thread.
#pragma once

#include <memory>

#include "Benchmarks/CREP_ORA8/CREP_ORA8.h"
#include "db/Xact.h"
#include "lkbench/HostSetUp.h"
#include "lkbench/Users.h"

namespace bench {

class NullUser {
 public:
  NullUser();

  lkbench::VirtualUser& User() { return *m_users.Open(1).front(); }
  // Binds a transaction to the user and the benchmark and runs its PreBenchmark.
  void Prepare(CXact& xact);

 private:
  lkbench::Console m_console;
  lkbench::ErrorLog m_log{m_console};
  lkbench::HostSetUp m_host{m_console, m_log};
  lkbench::CallBreaker m_breaker;
  lkbench::CallWatch m_calls{m_breaker};
  lkbench::UserPool m_users;
  CREP_ORA8 m_benchmark;
};

}  // namespace bench
