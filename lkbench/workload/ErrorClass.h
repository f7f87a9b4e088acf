// SPDX-License-Identifier: Apache-2.0
// What kind of failure an error is, the same for every database: a deadlock is a deadlock whether its number
// is one of Oracle's or of MariaDB's. All functions are pure.
#pragma once

#include <cstddef>
#include <string_view>

namespace lkbench {

enum class ErrorClass {
  kDuplicateKey,
  kDeadlock,
  kLockTimeout,
  kSessionLost,
  kRefused,  // no session: too many of them, a wrong password, a server that does not listen
  kNoSpace,
  kCancelled,     // the call was broken off
  kConstraint,    // NULL where none may be, a foreign key, a check
  kBadValue,      // a value that does not fit its column
  kBadStatement,  // the statement names what is not there, or cannot be parsed
  kNoPrivilege,
  kReadOnly,
  kOther
};

inline constexpr std::size_t kErrorClasses = static_cast<std::size_t>(ErrorClass::kOther) + 1;

const char* NameOf(ErrorClass error_class);  // "duplicate-key" and so on

// Of the number that a driver reported, with its text: a MariaDB number that has no counterpart comes as
// ORA-28500 with "(number)" in the text. Number 0: none.
ErrorClass ClassOf(long number, std::string_view text);

// Of a number of a MariaDB server or its client library.
ErrorClass ClassOfMariaDb(long number);

}  // namespace lkbench
