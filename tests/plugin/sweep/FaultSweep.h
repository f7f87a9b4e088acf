// SPDX-License-Identifier: Apache-2.0
// A fault sweep runs an operation again and again on the scripted OCI and makes its first, second, … last OCI
// call fail in turn, in every way there is. What the operation then answers, reports and leaves behind must
// be what its rules say; a call that no rule speaks of fails the sweep. The number of calls is found by a run
// without a fault, so calls that are added later are swept too. One thread.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Recorders.h"
#include "ScriptedOci.h"
#include "oracle8/Oracle8Driver.h"

namespace sweep {

// The ways in which a call fails, as bits.
enum Kind : unsigned {
  kError = 1,     // OCI_ERROR with a record
  kBare = 2,      // OCI_ERROR without one
  kInfo = 4,      // OCI_SUCCESS_WITH_INFO: the call did its work
  kNoData = 8,    // OCI_NO_DATA
  kInvalid = 16,  // OCI_INVALID_HANDLE
  kMissing = 32,  // OCI_ERROR with ORA-00942, which drops expect
  kLowBits = 64,  // a status whose low 16 bits are 0, which is no failure: the call did its work
  kAnyFailure = kError | kBare | kInfo | kNoData | kInvalid | kMissing
};

// What an operation answers and leaves behind.
struct Effect {
  int result = 0;
  // The beginnings of the reports above information, in order: "ERROR 942: Cannot …". %N stands for the
  // number of the fault's record, -1 when it leaves none.
  std::vector<std::string> reports = {};
  int owned = 0;   // handles alive after it that Finish gives back
  int leaked = 0;  // handles that nothing gives back
};

// What the failure of a call does: the first rule that fits it. Without an effect the call's failure is
// ignored, and everything is as without a fault. A status that is no failure needs no rule.
struct Rule {
  std::string call;  // by name
  std::string text;  // how the statement text begins that the call serves; empty fits all
  unsigned kinds = kAnyFailure;
  std::optional<Effect> effect = {};
};
using Rules = std::vector<Rule>;
Rules operator+(Rules left, const Rules& right);

// The objects that an operation is swept on, new for every fault. The driver is connected when the subject
// has been made, unless connecting is what is swept.
class Subject {
 public:
  Subject();
  virtual ~Subject() = default;
  Subject(const Subject&) = delete;
  Subject& operator=(const Subject&) = delete;

  void Connect();
  virtual void Prepare() {}  // what goes before the operation
  virtual int Run() = 0;     // the operation
  virtual void Finish() {}   // gives back what the subject owns
  virtual void Rewind();     // before a second run of the same objects; here: Finish, Prepare
  virtual void Check(int nResult) { (void)nResult; }  // what else must be true after a run

  scripted::AssertRecorder m_asserts;
  scripted::RecordingHandler m_reports;
  COracle8Driver m_driver;
};

struct Operation {
  std::string name;
  std::function<std::unique_ptr<Subject>()> make;
  Effect success;  // without a fault
  Rules rules;
};

// Each call fails alone, in every way.
void SweepEachCall(const Operation& operation);
// A call fails and so does every one after it: the operation ends, and afterwards the same objects run again.
void SweepLostDatabase(const Operation& operation);

}  // namespace sweep
