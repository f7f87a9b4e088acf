// SPDX-License-Identifier: Apache-2.0
// What one session is doing, as far as an interrupt from another thread has to know it. The session's own
// thread opens a call and, inside it, windows: the times at which a KILL QUERY may reach the server. Commit,
// rollback and connecting run outside of windows and are never interrupted; a break that arrives then takes
// effect at the next window of the same call, or not at all. Leaving a window waits for a kill that is being
// sent, so a kill never meets a later statement of the session.
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>

namespace ocimaria {

class CallState {
 public:
  // The session's thread:
  void BeginCall();
  void EndCall();
  void EnterWindow();  // throws OraError 1013 when the call was broken already
  void LeaveWindow();

  // Any thread. The number of the call that is now to be interrupted; 0 when there is none, or when it is
  // being interrupted already.
  std::uint64_t RequestBreak();
  bool IsRunning(std::uint64_t call);  // that call has not returned
  // Forgets a break that has not reached the server yet.
  void CancelBreak();

  // The interrupting thread. Runs `kill` if that call is inside a window, which it cannot leave meanwhile.
  // False when the call is over and needs no further attempt.
  bool KillIfRunning(std::uint64_t call, const std::function<void()>& kill);

 private:
  std::mutex m_kill;   // held while a kill is sent; taken before m_state
  std::mutex m_state;  // guards what follows, held for moments only
  std::uint64_t m_call = 0;
  bool m_in_call = false;
  bool m_in_window = false;
  bool m_break_wanted = false;
};

// One window; the destructor closes it.
class InterruptibleWindow {
 public:
  explicit InterruptibleWindow(CallState& state) : m_state(state) { m_state.EnterWindow(); }
  ~InterruptibleWindow() { m_state.LeaveWindow(); }
  InterruptibleWindow(const InterruptibleWindow&) = delete;
  InterruptibleWindow& operator=(const InterruptibleWindow&) = delete;

 private:
  CallState& m_state;
};

}  // namespace ocimaria
