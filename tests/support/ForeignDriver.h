// SPDX-License-Identifier: Apache-2.0
// A driver of another database, which does nothing: for transactions that must not touch OCI with it, and for
// what all drivers have in common.
#pragma once

#include "db/DriverBase.h"

namespace scripted {

class ForeignDriver : public CDriverBase {
 public:
  int Connect(LKString, LKString, LKString) override { return 1; }
  int Disconnect() override { return 1; }
  int IsConnected() const override { return 1; }
  int Commit() override { return 1; }
  int Rollback() override { return 1; }
  int Cancel() override { return 1; }
  int PrepareStatement(const wchar_t*, int) override { return 1; }
  int ExecuteStatement(int) override { return 1; }
  int CloseStatement() override { return 1; }
  int Query(LKString, std::vector<std::vector<LKString>>&) override { return 1; }
  LKString GetServerVersion() override { return {}; }
};

}  // namespace scripted
