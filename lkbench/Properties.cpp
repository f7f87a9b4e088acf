// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Properties.h"

#include "lkbench/Text.h"

namespace lkbench {

CBenchmarkProperties PropertiesOf(const Job& job) {
  CBenchmarkProperties properties;
  properties.SetScale(job.scale);
  properties.SetCurrentScale(job.scale);
  properties.SetCreateUseBackup(job.use_backup);
  if (job.first_table > 1) {
    properties.SetIntAttribute1(job.first_table);
    properties.SetIntAttribute3(job.first_table - 1);
  }
  CRepBenchmarkProperties& tables = properties.GetRepBenchmarkProperties();
  tables.SetTableNumber(job.tables);
  tables.SetColumnNumbers(job.min_columns, job.max_columns);
  tables.SetColumnDistribution(static_cast<CRepBenchmarkProperties::enumDistType>(job.distribution));
  std::vector<std::shared_ptr<wxObject>> columns;
  for (const ColumnType& column : job.column_types)
    columns.push_back(std::make_shared<ColumnInfo>(ToHost(column.type), column.weight, column.nullable));
  tables.SetColumnInfo(std::move(columns));
  return properties;
}

void Bind(CXact& xact, VirtualUser& user, Seat seat, CSSBenchmark& benchmark,
          const CBenchmarkProperties& properties, CancelSwitch& cancel, std::uint32_t seed) {
  xact.InitializeForTest(nullptr, seat.user, seat.users, static_cast<int>(seed));
  xact.SetDriver(&user.Driver());
  xact.SetBenchmark(&benchmark);
  xact.SetBenchmarkProperties(properties);
  xact.SetCancelFlag(cancel.Flag());
}

}  // namespace lkbench
