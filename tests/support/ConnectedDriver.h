// SPDX-License-Identifier: Apache-2.0
// The fixture of tests against the scripted OCI: it is reset, a driver is connected to it, reports and
// assertions are written down, and the record of calls is empty when a test starts. own handles; Live() is
// compared with kDriverHandles for balance.
#pragma once

#include <gtest/gtest.h>

#include "Recorders.h"
#include "ScriptedOci.h"
#include "oracle8/Oracle8Driver.h"

namespace scripted {

template <class DriverClass = COracle8Driver>
class ConnectedDriver : public testing::Test {
 protected:
  ConnectedDriver() {
    Oci().Reset();
    m_driver.AddHandler(&m_reports);
    EXPECT_NE(m_driver.Connect(L"scripted", L"user", L"password"), 0);
    m_driverHandles = Oci().Live();
    Oci().ClearCalls();
  }
  ~ConnectedDriver() override { m_driver.Disconnect(); }

  int ExtraHandles() const { return Oci().Live() - m_driverHandles; }  // beyond the driver's own

  AssertRecorder m_asserts;
  RecordingHandler m_reports;
  DriverClass m_driver;

 private:
  int m_driverHandles = 0;
};

}  // namespace scripted
