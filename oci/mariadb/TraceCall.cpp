// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/TraceCall.h"

#include "oci/mariadb/TraceEvents.h"

namespace ocimaria::trace {
namespace {

std::string StatusName(sword status) {
  switch (status) {
    case OCI_SUCCESS:
      return "OCI_SUCCESS";
    case OCI_SUCCESS_WITH_INFO:
      return "OCI_SUCCESS_WITH_INFO";
    case OCI_NO_DATA:
      return "OCI_NO_DATA";
    case OCI_ERROR:
      return "OCI_ERROR";
    case OCI_INVALID_HANDLE:
      return "OCI_INVALID_HANDLE";
    default:
      return std::to_string(status);
  }
}

}  // namespace

std::string Shown(const OCIEnv* handle) { return HandleName(OCI_HTYPE_ENV, handle); }
std::string Shown(const OCIError* handle) { return HandleName(OCI_HTYPE_ERROR, handle); }
std::string Shown(const OCIServer* handle) { return HandleName(OCI_HTYPE_SERVER, handle); }
std::string Shown(const OCISession* handle) { return HandleName(OCI_HTYPE_SESSION, handle); }
std::string Shown(const OCISvcCtx* handle) { return HandleName(OCI_HTYPE_SVCCTX, handle); }
std::string Shown(const OCIStmt* handle) { return HandleName(OCI_HTYPE_STMT, handle); }
std::string Shown(const OCIBind* handle) { return HandleName(OCI_HTYPE_BIND, handle); }
std::string Shown(const void* argument) { return HandleName(0, argument); }

void AppendArgument(std::string& shown, std::string_view& names, const std::string& value) {
  const auto comma = names.find(", ");
  if (!shown.empty()) shown += ", ";
  shown.append(names.substr(0, comma)).append("=").append(value);
  names.remove_prefix(comma == names.npos ? names.size() : comma + 2);
}

CallNote* EnterCall(const char* name, std::string arguments) {
  thread_local CallNote note;
  ThisThread() = {name, 0};
  note = {std::move(arguments), Clock::now()};
  return &note;
}

void LeaveCall(const CallNote& call, sword status) {
  if (On(kCalls))
    Write("call",
          ThisThread().call + ("(" + call.arguments + ") = ") + StatusName(status) + Took(call.entered));
  ThisThread() = {};
}

}  // namespace ocimaria::trace
