// SPDX-License-Identifier: Apache-2.0
// A database for driver tests: a private server that the program starts once, a connected driver per test,
// and short ways to run statements and to look at tables through the driver's own handles.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Recorders.h"
#include "localdb/LocalServer.h"
#include "oracle8/Oracle8Driver.h"

namespace real_database {

localdb::LocalServer& TheServer();

int ConnectTo(COracle8Driver& driver);  // as the server's own user

// 0, or the Oracle number of the failure.
int Execute(COracle8Driver& driver, const std::string& sql, ub4 mode = OCI_COMMIT_ON_SUCCESS);

// One text a column: name, type, size, precision, scale, and "NOT NULL" where it holds.
std::vector<std::string> DescribeTable(COracle8Driver& driver, const std::string& table);

std::vector<std::vector<std::string>> Rows(CDriverBase& driver, const std::string& query);

class RealDatabase : public testing::Test {
 protected:
  RealDatabase();

  // Makes a table anew and runs the statements after it, none of which may fail.
  void Make(const std::string& table, const std::string& columns, const std::vector<std::string>& then = {});

  scripted::RecordingHandler m_reports;
  COracle8Driver m_driver;
};

}  // namespace real_database
