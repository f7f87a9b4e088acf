// SPDX-License-Identifier: Apache-2.0
// What the journals of the schema transactions share: the texts of their OCI calls on the first handles of a
// test, and the paths on which a call fails, each a test of its own.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "SchemaFixture.h"

namespace plugin_test {

using scripted::Events;

inline const std::string kAlloc = "OCIHandleAlloc(env#1, 4, 0, null)";
inline const std::string kFree = "OCIHandleFree(stmt#1, 4)";
inline std::string Prepare(const std::string& sql) {
  return "OCIStmtPrepare(stmt#1, err#1, \"" + sql + "\", " + std::to_string(sql.size()) + ", 1, 0)";
}
inline std::string Execute(int mode) {
  return "OCIStmtExecute(svc#1, stmt#1, err#1, 1, 0, null, null, " + std::to_string(mode) + ")";
}
inline std::string Report(int status) { return "HandleError(" + std::to_string(status) + ", err#1, 0, 0)"; }
inline const std::string kExecuteAndCommit = Execute(32);
inline const std::string kStart = "SetStartTime()";
inline const std::string kEnd = "SetEndTime(0, 0)";
inline const std::string kSucceeds = "returned 1";
inline const std::string kFails = "returned 0";

// What the status kHighStatus is passed on as.
inline constexpr int kWhole = 0x10005;
inline constexpr int kLow = 5;

// What OraFault's status is passed on as, masked and whole.
inline constexpr int kLowError = 65535;
inline constexpr int kWholeError = -1;

inline const std::string kReportedStatus = "reported ERROR -1";  // a status without a record
inline std::string Reported(int code) { return "reported ERROR " + std::to_string(code); }

// The status of a call that works all the same.
inline scripted::Fault Working(sword status) { return {status, 0, "", true}; }

struct Path {
  std::string name;
  std::function<void()> script;  // makes calls fail
  Events events;                 // the whole journal of one Execute
  int handles = 0;               // not freed at its end
};
inline void PrintTo(const Path& path, std::ostream* out) { *out << path.name; }

inline std::function<void()> Fail(const std::string& call, int nth, const scripted::Fault& fault) {
  return [=] { scripted::Oci().FailCall(call, nth, fault); };
}
inline std::function<void()> FailSql(const std::string& sql, const scripted::Fault& fault) {
  return [=] { scripted::Oci().FailSql(sql, 1, fault); };
}
inline std::function<void()> NoFault() {
  return [] {};
}

// A transaction whose byte counter can be set.
template <class Transaction>
class Counting : public Transaction {
 public:
  using CXact::m_nXactBytes;
};

template <class Transaction>
class Calls : public SchemaTest {
 protected:
  Events Run() {
    Bind(m_xact);
    return m_journal.Run([&] { return m_xact.Execute(); });
  }

  Counting<Transaction> m_xact;
};

// The fixture of a table of paths: Fixture is a Calls.
template <class Fixture>
class EachPath : public Fixture, public testing::WithParamInterface<Path> {
 protected:
  void ExpectJournal() {
    GetParam().script();
    EXPECT_THAT(Fixture::Run(), testing::ElementsAreArray(GetParam().events));
    EXPECT_EQ(Fixture::ExtraHandles(), GetParam().handles);
    EXPECT_THAT(scripted::Oci().Violations(), testing::IsEmpty());
  }
};

inline std::string NameOfPath(const testing::TestParamInfo<Path>& info) { return info.param.name; }

}  // namespace plugin_test
