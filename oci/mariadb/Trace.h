// SPDX-License-Identifier: Apache-2.0
// The trace that the environment variable OCIMARIADB_TRACE asks for: one line for each event, to stderr or a
// file. docs/oci_trace.md is its page. This header is the switch and the line; TraceCall.h and TraceEvents.h
// say what is traced. Values of binds, fetched values and passwords are never handed to any of it.
// Any thread. Lines of several threads do not mix. While a kind of event is off, it costs one relaxed load.
#pragma once

#include <atomic>
#include <string>
#include <string_view>

namespace ocimaria::trace {

enum Bit : unsigned { kCalls = 1, kErrors = 2, kSql = 4, kHandles = 8, kConnections = 16, kSettings = 32 };

inline constinit std::atomic<unsigned> active_bits{0};  // set when the library is loaded

inline bool Active() { return active_bits.load(std::memory_order_relaxed) != 0; }
inline bool On(Bit bit) { return (active_bits.load(std::memory_order_relaxed) & bit) != 0; }

// What the variable asks for.
struct Request {
  unsigned bits = 0;
  std::string file;  // empty: stderr
};

// "BITS" or "BITS:FILE". Throws std::invalid_argument with what is wrong and what would be right.
Request ParseRequest(std::string_view value);

// Text that came from outside, fit for one line: control characters and backslashes are escaped.
std::string OneLine(std::string_view text);

// The call that this thread is in, and the server's number for the connection that the call uses; null and 0
// when there is none. Kept while any tracing is on.
struct Context {
  const char* call = nullptr;
  unsigned long connection = 0;
};
Context& ThisThread();

// Writes one line: time, thread, connection (0: none), kind, text. REQUIRES text without line ends.
void Write(const char* kind, unsigned long connection, std::string_view text);
void Write(const char* kind, std::string_view text);  // with the connection of this thread's call

// A tracing that fails must not fail what it traces: runs `work` and drops what it throws.
template <class Work>
void Safely(Work&& work) noexcept {
  try {
    work();
  } catch (...) {
    active_bits.store(0, std::memory_order_relaxed);  // out of memory: a trace with holes would mislead
  }
}

}  // namespace ocimaria::trace
