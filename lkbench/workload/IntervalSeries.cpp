// SPDX-License-Identifier: Apache-2.0
#include "lkbench/workload/IntervalSeries.h"

#include <type_traits>

namespace lkbench {
namespace {

constexpr int kGroupBits = 7;
constexpr std::uint64_t kMore = 1u << kGroupBits;  // set in a byte that another one follows
constexpr std::uint64_t kOwnResponse = 1;          // a mark; the others say which error classes are not 0

constexpr std::uint64_t MarkOf(std::size_t error_class) { return kOwnResponse << (error_class + 1); }

static_assert(MarkOf(kErrorClasses) != 0);

class Writer {
 public:
  explicit Writer(std::deque<std::uint8_t>& bytes) : m_bytes(bytes) {}

  template <class Value>
  void Number(const Value& value) {
    auto rest = static_cast<std::uint64_t>(value);
    for (; rest >= kMore; rest >>= kGroupBits)
      m_bytes.push_back(static_cast<std::uint8_t>(rest % kMore | kMore));
    m_bytes.push_back(static_cast<std::uint8_t>(rest));
  }
  // The sign goes into the lowest bit, so that a small step down is a small number too.
  void Step(const std::uint64_t& value, std::uint64_t from) {
    const std::uint64_t step = value - from;
    Number(step << 1 ^ (0 - (step >> 63)));
  }

 private:
  std::deque<std::uint8_t>& m_bytes;
};

class Reader {
 public:
  explicit Reader(std::deque<std::uint8_t>::const_iterator& next) : m_next(next) {}

  template <class Value>
  void Number(Value& value) {
    std::uint64_t number = 0;
    std::uint64_t byte = kMore;
    for (int place = 0; byte >= kMore; place += kGroupBits) {
      byte = *m_next++;
      number |= byte % kMore << place;
    }
    value = static_cast<Value>(number);
  }
  void Step(std::uint64_t& value, std::uint64_t from) {
    std::uint64_t step = 0;
    Number(step);
    value = from + (step >> 1 ^ (0 - (step & 1)));
  }

 private:
  std::deque<std::uint8_t>::const_iterator& m_next;
};

// What follows says what is written and read, once for both: a port is a Writer of what is const, or a
// Reader.

template <class Port, class Times>
void Pass(Port& port, Times& times, std::uint64_t likely_count) {
  port.Step(times.count, likely_count);
  port.Number(times.p50);
  port.Step(times.mean, times.p50);
  port.Step(times.p95, times.p50);
  port.Step(times.p99, times.p95);
  port.Step(times.p999, times.p99);
  port.Step(times.max, times.p999);
}

std::uint64_t MarksOf(const XactInterval& xact) {
  std::uint64_t marks = xact.response == xact.service ? 0 : kOwnResponse;
  for (std::size_t i = 0; i < kErrorClasses; ++i)
    if (xact.errors[i] != 0) marks |= MarkOf(i);
  return marks;
}

template <class Port, class Xact>
void Pass(Port& port, Xact& xact) {
  std::uint64_t marks = MarksOf(xact);
  port.Number(marks);
  port.Number(xact.executions);
  port.Number(xact.failures);
  port.Step(xact.rows, xact.executions);
  port.Number(xact.undone);
  for (std::size_t i = 0; i < kErrorClasses; ++i)
    if ((marks & MarkOf(i)) != 0) port.Number(xact.errors[i]);
  Pass(port, xact.service, xact.executions - xact.failures);
  if ((marks & kOwnResponse) != 0)
    Pass(port, xact.response, xact.service.count);
  else if constexpr (!std::is_const_v<Xact>)
    xact.response = xact.service;
}

template <class Port, class Value>
void PassInterval(Port& port, Value& interval, std::uint64_t end_before) {
  port.Step(interval.begin, end_before);
  port.Step(interval.end, interval.begin);
  port.Number(interval.phase);
  port.Number(interval.warm_up);
  port.Number(interval.users);
  port.Number(interval.backlog);
  Pass(port, interval.total);
  std::size_t xacts = interval.xacts.size();
  port.Number(xacts);
  if constexpr (!std::is_const_v<Value>) interval.xacts.resize(xacts);
  for (auto& xact : interval.xacts) Pass(port, xact);
}

}  // namespace

void IntervalSeries::Append(const Interval& interval) {
  Writer writer(m_bytes);
  PassInterval(writer, interval, m_end);
  m_end = interval.end;
  ++m_size;
}

IntervalSeries::Iterator::Iterator(const IntervalSeries& series)
    : m_next(series.m_bytes.begin()), m_left(series.m_size) {
  if (m_left > 0) Unpack();
}

IntervalSeries::Iterator& IntervalSeries::Iterator::operator++() {
  if (--m_left > 0) Unpack();
  return *this;
}

void IntervalSeries::Iterator::Unpack() {
  const std::uint64_t end_before = m_interval.end;
  m_interval = {};
  Reader reader(m_next);
  PassInterval(reader, m_interval, end_before);
}

}  // namespace lkbench
