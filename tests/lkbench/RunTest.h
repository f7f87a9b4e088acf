// SPDX-License-Identifier: Apache-2.0
// A test of whole runs: a local database of its own, which the test keeps open so that it can look into it
// before, while and after lkbench works there.
#pragma once

#include <gmock/gmock.h>

#include <optional>

#include "Program.h"
#include "SqlClient.h"
#include "TemporaryFolder.h"

class RunTest : public testing::Test {
 protected:
  RunTest() : m_server(m_folder.Path() / "db"), m_sql(m_server) {}

  std::vector<std::string> Arguments(const std::vector<std::string>& arguments) const {
    std::vector<std::string> all = arguments;
    all.insert(all.end(), {"--target", "local:" + (m_folder.Path() / "db").string()});
    if (all.front() == "run" || all.front() == "workload")
      all.insert(all.end(), {"--results", m_folder.Path() / ("results" + std::to_string(++m_runs))});
    return all;
  }
  Outcome Run(const std::vector<std::string>& arguments) const { return RunProgram(Arguments(arguments)); }
  // Runs it and expects success.
  void Do(const std::vector<std::string>& arguments) const {
    const Outcome outcome = Run(arguments);
    EXPECT_EQ(outcome.code, 0) << arguments.front() << ": " << outcome.err << outcome.out;
    EXPECT_EQ(outcome.err, "") << arguments.front();
  }
  std::string Value(const std::string& query) { return m_sql.Value(query); }
  // "count, different, lowest..highest" of a table's IDs.
  std::string Ids(const std::string& table) {
    return Value(
        "SELECT CONCAT(COUNT(*), ' rows ', COUNT(DISTINCT ID), ' ids ', COALESCE(MIN(ID), 0), '..', "
        "COALESCE(MAX(ID), 0)) FROM " +
        table);
  }
  bool HasTable(const std::string& table) {
    return Value(
               "SELECT COUNT(*) FROM information_schema.tables WHERE table_schema = DATABASE() AND "
               "table_name = LOWER('" +
               table + "')") == "1";
  }
  bool IsWaitingForLock() {
    return Value("SELECT COUNT(*) FROM information_schema.processlist WHERE state LIKE 'Waiting for%lock'") !=
           "0";
  }
  std::string NextId() { return Value("SELECT NEXTVAL(LK_REP_ID_SEQ)"); }
  std::string State(const std::string& name) {
    return Value("SELECT STATE_VALUE FROM LKBENCH_STATE WHERE STATE_NAME = '" + name + "'");
  }
  std::string Property(const std::string& name) {
    return Value("SELECT PROP_VALUE FROM LK_REP_PROPERTIES WHERE PROP_NAME = '" + name + "'");
  }

  // The IDs of a table that holds exactly 1 .. rows.
  static std::string Exactly(int rows) {
    const std::string count = std::to_string(rows);
    return count + " rows " + count + " ids " + (rows > 0 ? "1.." : "0..") + count;
  }

  test_support::TemporaryFolder m_folder;
  mutable int m_runs = 0;
  localdb::LocalServer m_server;
  SqlClient m_sql;
};
