// SPDX-License-Identifier: Apache-2.0
// Failures of OCI calls: the exception that the driver's own code throws, and the reading of error handles.
// No exception leaves COracle8Driver.
#pragma once

#include <oci.h>

#include <exception>

#include "core/LKString.h"

namespace oracle8 {

// True when the low 16 bits are non-zero, so that a status that was masked on its way here still counts.
constexpr bool Failed(sword status) { return (status & 0xFFFF) != 0; }

// A call failed: `Action` says what it was to do. With status OCI_SUCCESS no call failed and the action is
// the whole message. A call that takes no error handle leaves no record: what an error handle holds then is
// an older one.
class OciFailure : public std::exception {
 public:
  enum Record { kLeft, kNone };
  OciFailure(sword status, const LKString& action, Record record = kLeft)
      : m_status(status), m_action(action), m_record(record) {}
  sword Status() const { return m_status; }
  const LKString& Action() const { return m_action; }
  bool HasRecord() const { return m_record == kLeft; }
  const char* what() const noexcept override { return "OCI call failed"; }

 private:
  sword m_status;
  LKString m_action;
  Record m_record;
};

// Throws OciFailure when the status is a failure.
inline void Check(sword status, const wchar_t* action) {
  if (Failed(status)) throw OciFailure(status, action);
}

// As Check, for calls that may succeed with a warning.
inline void CheckError(sword status, const wchar_t* action) {
  if (status != OCI_SUCCESS_WITH_INFO) Check(status, action);
}

struct ErrorText {
  sb4 code = 0;   // the Oracle number of the first record; 0 when there is none
  LKString text;  // all records, a line each, without a line end behind the last
};

// What there is to say about a failed status. The error handle may be null; a status that leaves no record
// gets a text of its own.
ErrorText ReadError(sword status, OCIError* error);

}  // namespace oracle8
