// SPDX-License-Identifier: Apache-2.0
// The intervals of a run, one after the other, packed: a run of hours has thousands of them, and what is not
// read before the end should take little until then. Appended to and read in order; what was appended comes
// back equal in every bit. One thread, or several that only read. Appending ends the iterators.
//
// An interval of three transactions takes up to 150 bytes, with a rate up to 240. It is a row of numbers,
// each in as many groups of seven bits as it needs, so that small ones are short: times are kept as the
// difference to a time that is near, the begin as that to the end before, and response times only where they
// are not the service times. The bytes stand in blocks that stay where they are.
#pragma once

#include <cstddef>
#include <deque>
#include <iterator>

#include "lkbench/workload/Interval.h"

namespace lkbench {

class IntervalSeries {
 public:
  class Iterator {
   public:
    const Interval& operator*() const { return m_interval; }
    const Interval* operator->() const { return &m_interval; }
    Iterator& operator++();
    bool operator==(std::default_sentinel_t) const { return m_left == 0; }

   private:
    friend class IntervalSeries;
    explicit Iterator(const IntervalSeries& series);
    void Unpack();

    std::deque<std::uint8_t>::const_iterator m_next;
    std::size_t m_left;  // the one that it stands on included
    Interval m_interval;
  };

  void Append(const Interval& interval);

  Iterator begin() const { return Iterator(*this); }
  std::default_sentinel_t end() const { return {}; }
  std::size_t Size() const { return m_size; }
  std::size_t Bytes() const { return m_bytes.size(); }  // that the intervals take

 private:
  std::deque<std::uint8_t> m_bytes;
  std::size_t m_size = 0;
  std::uint64_t m_end = 0;  // of the last one
};

}  // namespace lkbench
