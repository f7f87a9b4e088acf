// SPDX-License-Identifier: Apache-2.0
// What the tests of complete call lists share: lists put together, and the ways in which an operation ends
// when one of its OCI calls fails. Statuses that the calls fail with have a high half (kHighStatus), so that
// a list tells whether a status was passed on whole.
#pragma once

#include <gmock/gmock.h>

#include <initializer_list>
#include <ostream>
#include <string>
#include <vector>

#include "JournalDriver.h"

namespace scripted {

inline Events Together(std::initializer_list<Events> lists) {
  Events all;
  for (const Events& list : lists) all.insert(all.end(), list.begin(), list.end());
  return all;
}

inline bool IsOciCall(const std::string& event) { return event.starts_with("OCI"); }

// The list up to its nth OCI call, that one included.
inline Events UpToCall(const Events& list, int nCall) {
  Events head;
  for (const std::string& event : list) {
    if (nCall == 0) break;
    head.push_back(event);
    if (IsOciCall(event)) --nCall;
  }
  EXPECT_EQ(nCall, 0) << "the list has fewer OCI calls";
  return head;
}

inline int CountOciCalls(const Events& list) {
  int nCalls = 0;
  for (const std::string& event : list) nCalls += IsOciCall(event) ? 1 : 0;
  return nCalls;
}

// The OCI calls nFirst to nLast of a success, each of which ends the operation with the same events, and how
// many handles the transaction then holds.
struct FailingCalls {
  std::string name;
  int nFirst;
  int nLast;
  Events tail;
  int nHandles;
};

// One of them.
struct FailurePath {
  std::string name;
  int nCall;
  Events tail;
  int nHandles;
};
inline void PrintTo(const FailurePath& path, std::ostream* out) { *out << path.name; }

inline std::vector<FailurePath> EachCall(const std::vector<FailingCalls>& rows) {
  std::vector<FailurePath> paths;
  for (const FailingCalls& row : rows)
    for (int nCall = row.nFirst; nCall <= row.nLast; ++nCall)
      paths.push_back({row.name + std::to_string(nCall), nCall, row.tail, row.nHandles});
  return paths;
}

inline std::string NameOfPath(const testing::TestParamInfo<FailurePath>& info) { return info.param.name; }

// The driver's report of a failed call: what it was told, and that it passed a report on.
inline Events Reported(int nStatus, const std::string& message) {
  return {"HandleError(" + std::to_string(nStatus) + ", err#1, \"" + message + "\", 0, 0)",
          "reported ERROR -1"};
}
inline Events Reported(int nStatus) {
  return {"HandleError(" + std::to_string(nStatus) + ", err#1, 0, 0)", "reported ERROR -1"};
}

// An assertion without a number of its own: the event names file, function and condition.
inline auto AssertIn(const std::string& file, const std::string& function, const std::string& condition) {
  return testing::AllOf(testing::StartsWith("assert "),
                        testing::HasSubstr("Benchmarks/CREP_ORA8/" + file + ":"),
                        testing::EndsWith(" " + function + ": " + condition));
}

// Makes every OCI call from now on, though it does its work, return a status whose low 16 bits are zero: no
// failure.
inline void ReturnHighBitsOnly() { Oci().FailFrom(1, {kLowBitsZero, 0, "", true}); }

}  // namespace scripted
