// SPDX-License-Identifier: Apache-2.0
// The environment: parent of all other handles, and what they share. Any thread.
#pragma once

#include <memory>
#include <mutex>
#include <optional>

#include "oci/mariadb/Breaker.h"
#include "oci/mariadb/Errors.h"
#include "oci/mariadb/Handles.h"
#include "oci/mariadb/TraceEvents.h"

namespace ocimaria {

class Environment : public Handle {
 public:
  static constexpr ub4 kType = OCI_HTYPE_ENV;
  Environment() : Handle(kType), m_breaker(Breaker::Shared()) {}

  // The record of the last call that failed and had only the environment to leave it on.
  void SetLastError(const OraError& error) {
    trace::ErrorReported(error);
    std::lock_guard lock(m_mutex);
    m_last_error = RecordOf(error);
  }
  std::optional<ErrorRecord> LastError() {
    std::lock_guard lock(m_mutex);
    return m_last_error;
  }

 private:
  const std::shared_ptr<Breaker> m_breaker;  // held so that it lives as long as any environment
  std::mutex m_mutex;
  std::optional<ErrorRecord> m_last_error;
};

}  // namespace ocimaria
