// SPDX-License-Identifier: Apache-2.0
// The outer layer of every exported call: it finds the error handle, clears its record, runs the work and
// turns whatever the work throws into a status and a record. Nothing thrown passes a C border. Each call
// comes with its name and arguments (OCI_CALL), for the trace.
#pragma once

#include <exception>
#include <functional>

#include "oci/mariadb/Errors.h"
#include "oci/mariadb/TraceCall.h"

namespace ocimaria {

// The record for an exception that is being handled. REQUIRES: called inside a catch clause.
OraError CurrentException();

// Calls that have no error handle: OCI_INVALID_HANDLE for a wrong handle, OCI_ERROR for anything else.
template <class Work>
sword Contained(const trace::CallNote* call, Work&& work) noexcept {
  sword status = OCI_ERROR;
  try {
    status = std::forward<Work>(work)();
  } catch (const InvalidHandle&) {
    status = OCI_INVALID_HANDLE;
  } catch (...) {
    status = OCI_ERROR;
  }
  if (call) trace::Safely([&] { trace::LeaveCall(*call, status); });
  return status;
}

// `work` takes the ErrorHandle and returns a status. An error ORA-01403 is OCI_NO_DATA, any other OCI_ERROR.
template <class Work>
sword Guarded(const trace::CallNote* call, const void* errhp, Work&& work) noexcept {
  return Contained(call, [&]() -> sword {
    auto& error = Need<ErrorHandle>(errhp);
    error.Clear();
    try {
      return work(error);
    } catch (const InvalidHandle&) {
      throw;
    } catch (...) {
      const OraError reported = CurrentException();
      error.Report(reported);
      return reported.Code() == 1403 ? OCI_NO_DATA : OCI_ERROR;
    }
  });
}

}  // namespace ocimaria
