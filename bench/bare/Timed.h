// SPDX-License-Identifier: Apache-2.0
// One user's loop: a transaction over and over for a time, and the line that bench/compare reads.
#pragma once

#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <random>

namespace bare {

inline double CpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// Prints "transactions N seconds S cpu C".
template <class Transaction>
void RepeatFor(double seconds, Transaction&& transaction) {
  using Clock = std::chrono::steady_clock;
  const double cpu = CpuSeconds();
  const auto begin = Clock::now();
  const auto elapsed = [begin] { return std::chrono::duration<double>(Clock::now() - begin).count(); };
  long done = 0;
  for (; elapsed() < seconds; ++done) transaction();
  const double took = elapsed();
  std::printf("transactions %ld seconds %.6f cpu %.6f\n", done, took, CpuSeconds() - cpu);
}

// Tables and rows are drawn evenly, as the plug-in draws them.
class Draw {
 public:
  Draw(size_t tables, size_t rows) : m_table(0, tables - 1), m_row(1, rows) {}
  size_t Table() { return m_table(m_engine); }
  size_t Row() { return m_row(m_engine); }

 private:
  std::minstd_rand m_engine{1};
  std::uniform_int_distribution<size_t> m_table, m_row;
};

}  // namespace bare
