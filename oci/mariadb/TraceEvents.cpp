// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/TraceEvents.h"

#include <array>
#include <cstdio>
#include <map>

#include "oci/mariadb/Handles.h"
#include "oci/mariadb/TraceError.h"

namespace ocimaria::trace {
namespace {

const char* KindName(ub4 type) {
  switch (type) {
    case OCI_HTYPE_ENV:
      return "env";
    case OCI_HTYPE_ERROR:
      return "error";
    case OCI_HTYPE_SVCCTX:
      return "service";
    case OCI_HTYPE_STMT:
      return "stmt";
    case OCI_HTYPE_BIND:
      return "bind";
    case OCI_HTYPE_DEFINE:
      return "define";
    case OCI_HTYPE_SERVER:
      return "server";
    case OCI_HTYPE_SESSION:
      return "session";
    case OCI_DTYPE_PARAM:
      return "param";
    default:
      return "";
  }
}

std::string NameOf(const Handle& handle) { return HandleName(handle.Type(), handle.Token()); }

// "3 (1 error, 2 stmt)"
std::string Counted(const std::vector<const Handle*>& handles, std::size_t first) {
  std::map<std::string, int> kinds;
  for (std::size_t i = first; i < handles.size(); ++i) ++kinds[KindName(handles[i]->Type())];
  std::string list;
  for (const auto& [kind, count] : kinds)
    list.append(list.empty() ? " (" : ", ").append(std::to_string(count)).append(" ").append(kind);
  return std::to_string(handles.size() - first) + list + (list.empty() ? "" : ")");
}

std::string Where() {
  const char* call = ThisThread().call;
  return call ? std::string("; in ") + call : std::string();
}

}  // namespace

std::string HandleName(ub4 type, const void* token) {
  if (!token) return "null";
  const auto number = HandleNumber(token);
  return number == 0 ? "given" : KindName(type) + ("#" + std::to_string(number));
}

std::string Took(Clock::time_point since) {
  const std::chrono::duration<double, std::milli> took = Clock::now() - since;
  char text[32];
  std::snprintf(text, sizeof text, " %.3f ms", took.count());
  return text;
}

void HandleAllocated(const Handle& handle, const Handle* parent) noexcept {
  if (!On(kHandles)) return;
  Safely(
      [&] { Write("handle", NameOf(handle) + " allocated" + (parent ? " below " + NameOf(*parent) : "")); });
}

void HandlesFreed(const std::vector<const Handle*>& freed) noexcept {
  if (!On(kHandles)) return;
  Safely([&] {
    const std::string first = NameOf(*freed.front());
    if (freed.front()->Type() == OCI_HTYPE_ENV)
      Write("handle", "alive below " + first + " as it is freed: " + Counted(freed, 1));
    for (std::size_t i = freed.size(); i-- > 1;) Write("handle", NameOf(*freed[i]) + " freed with " + first);
    Write("handle", first + " freed");
  });
}

void HandlesLeft(const std::vector<const Handle*>& left) noexcept {
  if (!On(kHandles)) return;
  Safely([&] {
    for (const auto& handle : left) Write("handle", NameOf(*handle) + " alive at the end of the process");
    Write("handle", "alive at the end of the process: " + Counted(left, 0));
  });
}

void ErrorReported(const OraError& error) noexcept {
  if (!On(kErrors)) return;
  Safely([&] { Write("error", ErrorText(error) + Where()); });
}

void RowFailed(ub4 element, const OraError& error) noexcept {
  if (!On(kErrors)) return;
  Safely([&] { Write("error", "row " + std::to_string(element) + ": " + ErrorText(error) + Where()); });
}

void SqlGiven(const void* statement, std::string_view text) noexcept {
  if (!On(kSql)) return;
  Safely([&] { Write("sql-given", HandleName(OCI_HTYPE_STMT, statement) + " " + OneLine(text)); });
}

void RoundTrip::Begin(std::string_view sql) noexcept {
  m_begun = Clock::now();
  if (On(kSql) && !sql.empty()) Safely([&] { Write("sql-sent", m_connection, OneLine(sql)); });
}

void RoundTrip::End() noexcept {
  if (On(kConnections)) Safely([&] { Write("roundtrip", m_connection, m_command + Took(m_begun)); });
}

void ConnectionEvent(unsigned long connection, std::string_view event, std::string_view detail) noexcept {
  if (!On(kConnections)) return;
  Safely([&] {
    Write("connection", connection, std::string(event) + (detail.empty() ? "" : " ") + OneLine(detail));
  });
}

void Setting(unsigned long connection, std::string_view text) noexcept {
  if (!On(kSettings)) return;
  Safely([&] { Write("setting", connection, OneLine(text)); });
}

}  // namespace ocimaria::trace
