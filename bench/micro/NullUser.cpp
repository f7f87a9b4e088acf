// SPDX-License-Identifier: Apache-2.0
#include "bench/micro/NullUser.h"

#include <stdexcept>

#include "oracle8/Oracle8Driver.h"

namespace bench {

NullUser::NullUser()
    : m_users([] { return std::make_unique<COracle8Driver>(); }, {"null", "null", "user", ""}, m_log,
              m_calls) {
  wxLog::SetLogLevel(wxLOG_Message);  // as lkbench without log_level = "debug"
}

void NullUser::Prepare(CXact& xact) {
  CBenchmarkProperties properties;
  properties.GetRepBenchmarkProperties().SetTableNumber(4);
  properties.SetScale(1.0);
  xact.SetBenchmarkProperties(properties);
  xact.SetDriver(&User().Driver());
  xact.SetBenchmark(&m_benchmark);
  xact.SetUserID(1);
  if (xact.PreBenchmark() != 1) throw std::runtime_error("PreBenchmark failed over nothing");
}

}  // namespace bench
