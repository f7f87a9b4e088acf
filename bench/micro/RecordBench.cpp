// SPDX-License-Identifier: Apache-2.0
// Filling the arrays of a batch: by the table loader, and by a loop written for this one table with the same
// random generator, the same widths and the same indicators.
#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <vector>

#include "Benchmarks/CREP_ORA8/RepTable.h"
#include "Benchmarks/CREP_ORA8/TableLoader.h"
#include "bench/micro/NullUser.h"
#include "core/LKDateTime.h"
#include "core/Random.h"
#include "oracle8/Oracle8Driver.h"

namespace {

constexpr int kBatch = 500;

void MakeRecord(benchmark::State& state) {
  bench::NullUser null;
  CRepTable table(dynamic_cast<COracle8Driver*>(&null.User().Driver()), L"LK_REP_TABLE1");
  if (!table.Initialize()) return state.SkipWithError("the table has no description");
  const std::unique_ptr<CTableLoader> loader(table.CreateLoader(kBatch));
  if (!loader->BindColumns()) return state.SkipWithError("the columns cannot be bound");
  long row = 0;
  int in_batch = 0;
  for ([[maybe_unused]] auto _ : state) {
    loader->MakeRecord(++row);
    if (++in_batch < kBatch) continue;
    loader->SendRows(kBatch);
    in_batch = 0;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(MakeRecord)->Name("record/loader");

// The arrays of the table that is described over nothing.
struct Batch {
  template <class T>
  using Column = std::vector<T>;
  Column<double> id = Column<double>(kBatch), number = id, decimal = id;
  Column<char> text = Column<char>(kBatch * 41), fixed = Column<char>(kBatch * 11),
               date = Column<char>(kBatch * 35), timestamp = date;
  Column<sb2> indicators[7];
  Batch() {
    for (auto& column : indicators) column.resize(kBatch);
  }
};

class HandLoop {
 public:
  void Fill(Batch& batch, int slot, long row) {
    batch.id[Index(slot)] = static_cast<double>(row);
    batch.indicators[0][Index(slot)] = sizeof(double);
    Number(batch, slot);
    Text(batch.text, batch.indicators[3], slot, 41, true);
    Text(batch.fixed, batch.indicators[4], slot, 11, false);
    Date(batch.date, batch.indicators[5], slot, false);
    Date(batch.timestamp, batch.indicators[6], slot, true);
  }

 private:
  static size_t Index(int slot) { return static_cast<size_t>(slot); }
  bool Null() { return m_random.UnifInt(1, 100) <= 5; }

  void Number(Batch& batch, int slot) {
    batch.number[Index(slot)] = static_cast<double>(m_random.UnifInt(0, 2147483647));
    batch.decimal[Index(slot)] = m_random.UnifReal(0.0, 99999999.0);
    batch.indicators[1][Index(slot)] = batch.indicators[2][Index(slot)] = sizeof(double);
  }
  void Text(std::vector<char>& column, std::vector<sb2>& indicators, int slot, int width, bool nullable) {
    if (nullable && Null()) {
      indicators[Index(slot)] = -1;
      return;
    }
    const int length = m_random.MakeAlphaString(1, width - 2, m_text);
    std::memcpy(&column[Index(slot * width)], m_text.data(), m_text.size());
    indicators[Index(slot)] = static_cast<sb2>(length);
  }
  // A nullable date costs the generator a draw more than it uses: the same rows need the same draws.
  void Date(std::vector<char>& column, std::vector<sb2>& indicators, int slot, bool nullable) {
    if (nullable) m_random.UnifInt(1, 100);
    if (nullable && Null()) {
      indicators[Index(slot)] = -1;
      return;
    }
    m_random.GenerateDate(m_first, m_last, m_date);
    const std::string text = m_date.Format("%Y/%m/%d %H:%M:%S");
    std::memcpy(&column[Index(slot * 35)], text.data(), text.size());
    indicators[Index(slot)] = static_cast<sb2>(text.size());
  }

  CRandGen m_random;
  std::string m_text;
  lkDateTime m_date;
  const lkDateTime m_first{1950, 1, 1, 0, 0, 0};
  const lkDateTime m_last{2500, 12, 30, 12, 12, 12};
};

void HandWritten(benchmark::State& state) {
  Batch batch;
  HandLoop loop;
  long row = 0;
  int slot = 0;
  for ([[maybe_unused]] auto _ : state) {
    loop.Fill(batch, slot, ++row);
    benchmark::ClobberMemory();
    slot = slot + 1 < kBatch ? slot + 1 : 0;
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK(HandWritten)->Name("record/hand loop");

}  // namespace
