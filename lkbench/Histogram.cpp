// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Histogram.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>

namespace lkbench {
namespace histogram {

std::size_t BucketOf(std::uint64_t nanoseconds) {
  if (nanoseconds < kSubBuckets) return nanoseconds;
  const auto bits = static_cast<int>(std::bit_width(nanoseconds));
  if (bits > kMostBits) return kBuckets - 1;
  const int group = bits - kSubBits;  // 1 for values from 64 to 127
  const std::uint64_t within = (nanoseconds >> (group - 1)) - kSubBuckets;
  return static_cast<std::uint64_t>(group) * kSubBuckets + within;
}

std::uint64_t MiddleOf(std::size_t bucket) {
  if (bucket < kSubBuckets) return bucket;
  const std::uint64_t shift = bucket / kSubBuckets - 1;
  const std::uint64_t low = (kSubBuckets + bucket % kSubBuckets) << shift;
  return low + (std::uint64_t{1} << shift) / 2;
}

}  // namespace histogram

void HistogramData::Record(std::uint64_t nanoseconds) {
  ++m_counts[histogram::BucketOf(nanoseconds)];
  ++m_count;
  m_sum += nanoseconds;
  m_max = std::max(m_max, nanoseconds);
}

void HistogramData::Add(const HistogramData& other) {
  std::ranges::transform(m_counts, other.m_counts, m_counts.begin(), std::plus());
  m_count += other.m_count;
  m_sum += other.m_sum;
  m_max = std::max(m_max, other.m_max);
}

void HistogramData::Subtract(const HistogramData& earlier) {
  std::ranges::transform(m_counts, earlier.m_counts, m_counts.begin(), std::minus());
  m_count -= earlier.m_count;
  m_sum -= earlier.m_sum;
  m_max = std::min(m_max, Percentile(100));
}

std::uint64_t HistogramData::Percentile(double percent) const {
  if (m_count == 0) return 0;
  const double exact = percent / 100.0 * static_cast<double>(m_count);
  const auto wanted = std::clamp<std::uint64_t>(static_cast<std::uint64_t>(std::ceil(exact)), 1, m_count);
  std::uint64_t seen = 0;
  for (std::size_t bucket = 0; bucket < m_counts.size(); ++bucket) {
    seen += m_counts[bucket];
    if (seen >= wanted) return std::min(histogram::MiddleOf(bucket), m_max);
  }
  return m_max;
}

void Histogram::Record(std::uint64_t nanoseconds) {
  m_counts.Raise(histogram::BucketOf(nanoseconds));
  m_sum.store(m_sum.load(std::memory_order_relaxed) + nanoseconds, std::memory_order_relaxed);
  if (nanoseconds > m_max.load(std::memory_order_relaxed))
    m_max.store(nanoseconds, std::memory_order_relaxed);
}

void Histogram::RecordShared(std::uint64_t nanoseconds) {
  m_counts.RaiseShared(histogram::BucketOf(nanoseconds));
  m_sum.fetch_add(nanoseconds, std::memory_order_relaxed);
  std::uint64_t highest = m_max.load(std::memory_order_relaxed);
  while (nanoseconds > highest &&
         !m_max.compare_exchange_weak(highest, nanoseconds, std::memory_order_relaxed)) {
  }
}

void Histogram::Clear() {
  m_counts.Clear();
  m_sum.store(0, std::memory_order_relaxed);
  m_max.store(0, std::memory_order_relaxed);
}

void Histogram::AddTo(HistogramData& data) const {
  for (std::size_t bucket = 0; bucket < histogram::kBuckets; ++bucket) {
    const std::uint64_t count = m_counts.Get(bucket);
    data.m_counts[bucket] += count;
    data.m_count += count;
  }
  data.m_sum += m_sum.load(std::memory_order_relaxed);
  data.m_max = std::max(data.m_max, m_max.load(std::memory_order_relaxed));
}

}  // namespace lkbench
