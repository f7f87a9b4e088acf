// SPDX-License-Identifier: Apache-2.0
// The fixture of the schema and refresh tests: a driver on the scripted OCI that answers backup operations
// itself, a journal, a benchmark and settings.
#pragma once

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Benchmarks/CREP_ORA8/CREP_ORA8.h"
#include "JournalDriver.h"
#include "db/Xact.h"

namespace plugin_test {

class SchemaTest : public scripted::JournalTest {
 protected:
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

  CREP_ORA8 m_benchmark;
  CBenchmarkProperties m_properties;
};

}  // namespace plugin_test
