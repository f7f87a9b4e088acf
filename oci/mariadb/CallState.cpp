// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/CallState.h"

#include "oci/mariadb/OraError.h"

namespace ocimaria {

void CallState::BeginCall() {
  std::lock_guard lock(m_state);
  ++m_call;
  m_in_call = true;
  m_break_wanted = false;
}

void CallState::EndCall() {
  std::lock_guard lock(m_state);
  m_in_call = false;
  m_break_wanted = false;
}

void CallState::EnterWindow() {
  std::lock_guard lock(m_state);
  if (m_break_wanted) throw OraError(1013);
  m_in_window = true;
}

void CallState::LeaveWindow() {
  std::lock_guard no_kill(m_kill);
  std::lock_guard lock(m_state);
  m_in_window = false;
}

std::uint64_t CallState::RequestBreak() {
  std::lock_guard lock(m_state);
  if (!m_in_call || m_break_wanted) return 0;
  m_break_wanted = true;
  return m_call;
}

bool CallState::IsRunning(std::uint64_t call) {
  std::lock_guard lock(m_state);
  return m_in_call && m_call == call;
}

void CallState::CancelBreak() {
  std::lock_guard lock(m_state);
  m_break_wanted = false;
}

bool CallState::KillIfRunning(std::uint64_t call, const std::function<void()>& kill) {
  std::lock_guard sending(m_kill);
  {
    std::lock_guard lock(m_state);
    if (!m_in_call || m_call != call || !m_break_wanted) return false;
    if (!m_in_window) return true;
  }
  kill();
  return true;
}

}  // namespace ocimaria
