// SPDX-License-Identifier: Apache-2.0
// What is traced beside the calls: errors, SQL, handle lifetimes, connections and round trips, settings.
// Each function asks for its bit first and writes at most one line. None fails. Any thread.
#pragma once

#include <oci.h>

#include <string>
#include <string_view>
#include <vector>

#include "oci/mariadb/OraError.h"
#include "oci/mariadb/TraceCall.h"

namespace ocimaria {
class Handle;
}

namespace ocimaria::trace {

// "stmt#12": the kind by its number in oci.h (0: any) and a number that no other handle of the process gets.
// "null" for a null pointer, "given" for what is no handle of this library.
std::string HandleName(ub4 type, const void* token);

std::string Took(Clock::time_point since);  // " 0.123 ms"

// Handles. REQUIRES the lock of the register, which keeps the lines in the order of the events.
void HandleAllocated(const Handle& handle, const Handle* parent) noexcept;
// The first is the one that the caller freed, the others went with it.
void HandlesFreed(const std::vector<const Handle*>& freed) noexcept;
// At the end of the process: those that nobody freed.
void HandlesLeft(const std::vector<const Handle*>& left) noexcept;

// An error as it is handed to the caller. What the server said is shown where its number says that the text
// only names objects: other texts may quote values.
void ErrorReported(const OraError& error) noexcept;
void RowFailed(ub4 element, const OraError& error) noexcept;

void SqlGiven(const void* statement, std::string_view text) noexcept;

// One round trip to the server: the SQL that goes with it, if any, before, and how long the answer took.
class RoundTrip {
 public:
  RoundTrip(unsigned long connection, const char* command, std::string_view sql = {}) noexcept
      : m_command(command), m_connection(connection) {
    if (Active()) Begin(sql);
  }
  ~RoundTrip() {
    if (Active()) End();
  }
  RoundTrip(const RoundTrip&) = delete;
  RoundTrip& operator=(const RoundTrip&) = delete;

 private:
  void Begin(std::string_view sql) noexcept;
  void End() noexcept;

  const char* const m_command;
  const unsigned long m_connection;
  Clock::time_point m_begun;
};

// Something that happens to a connection, e.g. "connected", with more about it.
void ConnectionEvent(unsigned long connection, std::string_view event, std::string_view detail = {}) noexcept;
void Setting(unsigned long connection, std::string_view text) noexcept;

// From here on the lines of this thread's call carry the connection.
inline void UseConnection(unsigned long connection) noexcept {
  if (Active()) ThisThread().connection = connection;
}

}  // namespace ocimaria::trace
