// SPDX-License-Identifier: Apache-2.0
// The fixture of the schema and refresh tests: a driver on the scripted OCI that answers backup operations
// itself, a journal, a benchmark, settings, and the texts of the calls that a transaction is expected to
// make.
#pragma once

#include <gmock/gmock.h>

#include <initializer_list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Benchmarks/CREP_ORA8/CREP_ORA8.h"
#include "JournalDriver.h"
#include "db/Xact.h"

namespace plugin_test {

// A transaction whose byte counter can be set.
template <class Transaction>
class Counting : public Transaction {
 public:
  using CXact::m_nXactBytes;
};

class SchemaTest : public scripted::JournalTest {
 protected:
  using Calls = std::vector<std::string>;

  // Gives the transaction the driver, the benchmark and the settings as they stand now.
  void Bind(CXact& xact) {
    xact.SetDriver(&m_driver);
    xact.SetBenchmark(&m_benchmark);
    xact.SetBenchmarkProperties(m_properties);
  }

  void SetTables(int nTables) { m_properties.GetRepBenchmarkProperties().SetTableNumber(nTables); }
  void SetColumnNumbers(int nMin, int nMax) {
    m_properties.GetRepBenchmarkProperties().SetColumnNumbers(nMin, nMax);
  }
  void SetColumns(std::vector<std::shared_ptr<wxObject>> columns) {
    m_properties.GetRepBenchmarkProperties().SetColumnInfo(std::move(columns));
  }
  static std::shared_ptr<wxObject> Column(const wchar_t* type, int nWeight, bool bNullable) {
    return std::make_shared<ColumnInfo>(type, nWeight, bNullable);
  }

  // The transaction's calls so far; the driver's reading of an error record is its own matter.
  static Calls XactCalls() {
    Calls calls = scripted::Oci().Calls();
    std::erase_if(calls, [](const std::string& call) { return call.starts_with("OCIErrorGet("); });
    return calls;
  }
  std::string Alloc() { return "OCIHandleAlloc(" + Name(m_driver.GetOCIEnvironment()) + ", 4, 0, null)"; }
  std::string Prepare(const std::string& sql) {
    return "OCIStmtPrepare(stmt#1, " + Error() + ", \"" + sql + "\", " + std::to_string(sql.size()) +
           ", 1, 0)";
  }
  std::string Execute(ub4 mode) {
    return "OCIStmtExecute(" + Name(m_driver.GetOCIServerContext()) + ", stmt#1, " + Error() +
           ", 1, 0, null, null, " + std::to_string(mode) + ")";
  }
  std::string RowCount() { return "OCIAttrGet(stmt#1, 4, 4, 9, " + Error() + ")"; }
  static std::string Free() { return "OCIHandleFree(stmt#1, 4)"; }
  std::string Error() { return Name(m_driver.GetOCIError()); }

  std::string OneReport() const {
    const auto reports = m_reports.Reports();
    EXPECT_EQ(reports.size(), 1u);
    return reports.empty() ? "" : reports.front();
  }

  CREP_ORA8 m_benchmark;
  CBenchmarkProperties m_properties;

 private:
  static std::string Name(const void* handle) { return scripted::Oci().NameOf(handle); }
};

}  // namespace plugin_test
