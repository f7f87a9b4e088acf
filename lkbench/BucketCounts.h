// SPDX-License-Identifier: Apache-2.0
// The counters of a histogram: 64 bits each, of which only the lower 32 take memory until one of them passes
// 2^31. Every user of a workload has several histograms, and few of their counters get that far.
//
// In short: a count is exact whenever it is read. One thread raises (Raise), or several that all use
// RaiseShared; any thread reads meanwhile.
//
// Why: a counter is a low word, the count modulo 2^32, and a high word, the count divided by 2^31, so the top
// bit of the low word is also the lowest bit of the high one. The writer stores the low word first and the
// reader loads the high one first: the high word is then at most one behind, which the bit that both have
// tells. Both kinds of words lie on pages of their own, which are zero and take no memory until they are
// written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace lkbench {

class BucketCounts {
 public:
  explicit BucketCounts(std::size_t size);

  void Raise(std::size_t bucket, std::uint32_t by = 1);  // by at most 2^31; the one writer
  void RaiseShared(std::size_t bucket,
                   std::uint32_t by = 1);       // likewise; any writer, when all of them use this
  std::uint64_t Get(std::size_t bucket) const;  // any reader
  void Clear();                                 // REQUIRES: nobody reads or writes meanwhile

 private:
  struct Unmap {
    std::size_t bytes;
    void operator()(std::uint32_t* words) const;
  };
  std::size_t m_size;
  std::unique_ptr<std::uint32_t[], Unmap> m_words;  // read and written as atomics
  std::uint32_t* m_high;                            // in m_words, from the start of a page
};

}  // namespace lkbench
