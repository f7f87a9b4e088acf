// SPDX-License-Identifier: Apache-2.0
// Which threads are inside a database call, for whom and since when. A thread that works on a session holds a
// CallWatch::Work; meanwhile each of its calls to the OCI library is noted (OciTap.cpp). Another thread looks
// after them: it breaks off calls that take too long, and gives up when one does not come back. From then on
// every thread with a Work stops for good where it begins or ends a call, so what they use stays as it is
// until the process ends. A Work and the notes belong to its thread; the rest any thread may call. A watch
// outlives its works.
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "lkbench/Cancel.h"

namespace lkbench {

class CallWatch {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;

  // `breaker` breaks lkbench's own statements when a signal comes; it outlives the watch.
  explicit CallWatch(CallBreaker& breaker) : m_breaker(breaker) {}
  CallWatch(const CallWatch&) = delete;
  CallWatch& operator=(const CallWatch&) = delete;

  // While it lives, the calls of its thread are those of a session, until a later one takes its place.
  class Work {
   public:
    Work(CallWatch& watch, CDriverBase& driver, std::string who);
    ~Work();
    Work(const Work&) = delete;
    Work& operator=(const Work&) = delete;

   private:
    friend class CallWatch;
    friend class CallNote;
    friend void NoteCallText(const void* statement, std::string_view text);
    friend void NoteCallDone(const void* statement, std::uint64_t rows);

    void Begin(const char* doing, const void* statement);
    void End();
    void Count(int table, std::uint64_t rows);

    CallWatch& m_watch;
    CDriverBase& m_driver;
    std::string m_who;
    Work* m_outer;
    const void* m_prepared = nullptr;  // the statement that was prepared last, and its text
    std::string m_text;
    int m_table = 0;  // that its statements are about
    // Guarded by the watch:
    TimePoint m_since{};  // TimePoint{}: in no call
    TimePoint m_broken{};
    std::string m_doing;
  };

  struct Call {
    std::string who;    // "user 2"
    std::string doing;  // "executing DROP TABLE LK_REP_TABLE1"
    TimePoint since;
  };

  // Breaks off every call that began before the moment, again each second while it runs on. Those that were
  // broken off for the first time.
  std::vector<Call> BreakBegunBefore(TimePoint moment);
  // The oldest call that began before the moment and still runs. If there is one, all works are given up.
  std::optional<Call> GiveUpBegunBefore(TimePoint moment);

  // What the works have done so far. A table is done when its thread has gone on to another one, or ended.
  struct Tally {
    std::uint64_t tables = 0;
    std::uint64_t rows = 0;  // of all statements
  };
  Tally Done();

  CallBreaker& Breaker() { return m_breaker; }

 private:
  CallBreaker& m_breaker;
  std::mutex m_mutex;
  std::vector<Work*> m_works;
  Tally m_done;
  bool m_is_given_up = false;
};

// A call of this thread, while it lives. `doing` says what kind it is; the text of `statement` is added when
// that was the last one prepared. Nothing happens without a Work, or inside another call.
class CallNote {
 public:
  explicit CallNote(const char* doing, const void* statement = nullptr);
  ~CallNote();
  CallNote(const CallNote&) = delete;
  CallNote& operator=(const CallNote&) = delete;

 private:
  CallWatch::Work* m_work;
};

// This thread is about to prepare a statement with that text.
void NoteCallText(const void* statement, std::string_view text);
// This thread has executed a statement, which was about so many rows.
void NoteCallDone(const void* statement, std::uint64_t rows);
// Whether anybody wants to know.
bool CallsAreNoted();

}  // namespace lkbench
