// SPDX-License-Identifier: Apache-2.0
#include "lkbench/BucketCounts.h"

#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <new>

namespace lkbench {
namespace {

constexpr int kSharedBit = 31;  // of a low word: the lowest bit of the high word

std::size_t WholePages(std::size_t bytes) {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  return (bytes + page - 1) / page * page;
}

std::uint32_t* NewPages(std::size_t bytes) {
  void* pages = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (pages == MAP_FAILED) throw std::bad_alloc();
  return static_cast<std::uint32_t*>(pages);
}

bool Passes(std::uint32_t before, std::uint32_t after) { return ((before ^ after) >> kSharedBit) != 0; }

}  // namespace

BucketCounts::BucketCounts(std::size_t size) : m_size(size) {
  const std::size_t bytes = WholePages(size * sizeof(std::uint32_t));
  m_words = {NewPages(2 * bytes), Unmap{2 * bytes}};
  m_high = m_words.get() + bytes / sizeof(std::uint32_t);
}

void BucketCounts::Unmap::operator()(std::uint32_t* words) const { munmap(words, bytes); }

void BucketCounts::Raise(std::size_t bucket, std::uint32_t by) {
  const std::atomic_ref low(m_words[bucket]);
  const std::uint32_t before = low.load(std::memory_order_relaxed);
  low.store(before + by, std::memory_order_relaxed);
  if (!Passes(before, before + by)) return;
  const std::atomic_ref high(m_high[bucket]);
  high.store(high.load(std::memory_order_relaxed) + 1, std::memory_order_release);
}

void BucketCounts::RaiseShared(std::size_t bucket, std::uint32_t by) {
  const std::uint32_t before = std::atomic_ref(m_words[bucket]).fetch_add(by, std::memory_order_relaxed);
  if (Passes(before, before + by)) std::atomic_ref(m_high[bucket]).fetch_add(1, std::memory_order_release);
}

std::uint64_t BucketCounts::Get(std::size_t bucket) const {
  const std::uint64_t high = std::atomic_ref(m_high[bucket]).load(std::memory_order_acquire);
  const std::uint32_t low = std::atomic_ref(m_words[bucket]).load(std::memory_order_relaxed);
  const std::uint64_t least = high << kSharedBit;
  return least +
         (low - static_cast<std::uint32_t>(least));  // the difference wraps at 2^32, as the low word does
}

void BucketCounts::Clear() {
  for (std::size_t bucket = 0; bucket < m_size; ++bucket) {  // pages without a count stay untouched
    if (m_words[bucket] != 0) m_words[bucket] = 0;
    if (m_high[bucket] != 0) m_high[bucket] = 0;
  }
}

}  // namespace lkbench
