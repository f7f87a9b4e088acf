// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/Errors.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "oci/mariadb/Environment.h"
#include "oci/mariadb/Guard.h"
#include "oci/mariadb/TraceEvents.h"

namespace ocimaria {
namespace {

// The text with its zero byte, cut to the buffer. False when it had to be cut.
bool CopyText(const std::string& text, OraText* buffer, ub4 size) {
  if (!buffer || size == 0) return false;
  const std::size_t length = std::min<std::size_t>(text.size(), size - 1);
  std::memcpy(buffer, text.data(), length);
  buffer[length] = 0;
  return length == text.size();
}

sword Deliver(const std::optional<ErrorRecord>& record, ub4 number, sb4* code, OraText* buffer, ub4 size) {
  if (!record || number != 1) return OCI_NO_DATA;
  if (code) *code = record->code;
  return CopyText(record->text, buffer, size) ? OCI_SUCCESS : OCI_ERROR;
}

}  // namespace

ErrorRecord RecordOf(const OraError& error) {
  char prefix[20];
  std::snprintf(prefix, sizeof prefix, "ORA-%05d: ", error.Code());
  return {error.Code(), prefix + error.Text() + "\n"};
}

void ErrorHandle::Report(const OraError& error) {
  Set(error);
  if (error.Code() != 1403) trace::ErrorReported(error);  // "no data found" ends every fetch
}

}  // namespace ocimaria

using namespace ocimaria;

// One record at most; everything else stands inside its text. A text that does not fit is cut, ended with a
// zero byte and answered with OCI_ERROR.
extern "C" sword OCIErrorGet(void* hndlp, ub4 recordno, OraText*, sb4* errcodep, OraText* bufp, ub4 bufsiz,
                             ub4 type) {
  return Contained(OCI_CALL(hndlp, recordno, bufsiz, type), [&]() -> sword {
    if (type == OCI_HTYPE_ENV)
      return Deliver(Need<Environment>(hndlp).LastError(), recordno, errcodep, bufp, bufsiz);
    if (type != OCI_HTYPE_ERROR) return OCI_INVALID_HANDLE;
    return Deliver(Need<ErrorHandle>(hndlp).Record(), recordno, errcodep, bufp, bufsiz);
  });
}
