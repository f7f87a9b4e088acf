// SPDX-License-Identifier: Apache-2.0
// The one event log of a test: what the code under test does, each event a text, in order. A test compares
// the whole of it, so that a call that comes too many, too few or too late is a difference. Events are
//   OCIStmtPrepare(stmt#1, err#1, "DROP TABLE T", 12, 1, 0)   every OCI call, as ScriptedOci writes it
//   SetStartTime()  SetResponseTime()  SetEndTime(0, 12)  Read()  Reset()     every call to any CTimer
//   HandleError(65541, err#1, 0, 0)  HandleError(5, err#1, "text", 0, 0)      statuses as they were passed
//   reported ERROR 942           a report of the driver's own went to the chain: level and number
//   HandleErrorMsg("text")  HandleInfoMsg("text")  HandleWarningMsg("text")   ", 1" when always to display
//   AddIgnoreError(942)  RemoveIgnoreError(942)   adds between two other events in order of their numbers
//   PrepareStatement("text", 0)  DropBackupTable(LK_REP_TABLE1)  ...          the driver's operations
//   assert FILE:LINE FUNCTION: CONDITION   debug FILE:LINE FUNCTION: MESSAGE  with an Assert-, a LogRecorder
//   returned 1                   what Run adds at its end
// What a driver does inside one of its operations (its OCI calls) is left out. Listens from construction to
// destruction, one at a time; events of any thread. Programs that use it link `journal`, which taps the timer
// and the driver, and use a JournalDriver.
#pragma once

#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "db/DriverBase.h"

namespace scripted {

using Events = std::vector<std::string>;

class Journal {
 public:
  Journal();
  ~Journal();
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;

  void WatchIgnoreList(CDriverBase& driver);
  Events All();  // so far
  void Clear();

  // Clears, runs the operation (anything that returns int) and adds what it returned.
  template <class Operation>
  Events Run(Operation operation) {
    Clear();
    Note("returned " + std::to_string(operation()));
    return All();
  }

  // Into the journal that listens, if there is one: unless this thread is quiet, or whatever it is.
  static void Note(const std::string& event);
  static void NoteAlways(const std::string& event);
  // What changed in the list of ignored errors since the last event.
  static void NoteIgnoreList();

 private:
  void Add(const std::string& event);
  void AddIgnoreListChanges();

  std::mutex m_mutex;
  Events m_events;
  CDriverBase* m_pDriver = nullptr;
  std::multiset<int> m_ignored;
};

// While one is alive, this thread's events are left out.
class Quiet {
 public:
  Quiet();
  ~Quiet();
  Quiet(const Quiet&) = delete;
  Quiet& operator=(const Quiet&) = delete;
};

bool IsQuiet();

}  // namespace scripted
