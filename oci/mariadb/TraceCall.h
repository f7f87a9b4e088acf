// SPDX-License-Identifier: Apache-2.0
// An exported call as the trace shows it: name, arguments, status, duration. Handles are shown by kind and
// number, numbers as they are, every other argument as "given" or "null": no memory of the caller is read.
#pragma once

#include <oci.h>

#include <chrono>
#include <concepts>
#include <string>
#include <string_view>
#include <utility>

#include "oci/mariadb/Trace.h"

namespace ocimaria::trace {

std::string Shown(const OCIEnv* handle);
std::string Shown(const OCIError* handle);
std::string Shown(const OCIServer* handle);
std::string Shown(const OCISession* handle);
std::string Shown(const OCISvcCtx* handle);
std::string Shown(const OCIStmt* handle);
std::string Shown(const OCIBind* handle);
std::string Shown(const void* argument);
template <std::integral Number>
std::string Shown(Number number) {
  return std::to_string(number);
}

using Clock = std::chrono::steady_clock;

// A call in progress, on its thread.
struct CallNote {
  std::string arguments;
  Clock::time_point entered;
};

// Puts the next name of a list "a, b, c" and a value behind what is there, and takes the name off the list.
void AppendArgument(std::string& shown, std::string_view& names, const std::string& value);

CallNote* EnterCall(const char* name, std::string arguments);
void LeaveCall(const CallNote& call, sword status);

// Notes the call that begins. Null when it cannot be noted.
template <class... Arguments>
[[gnu::cold, gnu::noinline]] CallNote* NoteCall(const char* name, std::string_view names,
                                                Arguments... arguments) noexcept {
  CallNote* note = nullptr;
  Safely([&] {
    std::string shown;
    if (On(kCalls)) (AppendArgument(shown, names, Shown(arguments)), ...);
    note = EnterCall(name, std::move(shown));
  });
  return note;
}

// The exported function that this stands in, with the arguments that are worth showing. Null, and no argument
// is looked at, while nothing is traced.
#define OCI_CALL(...) \
  (::ocimaria::trace::Active() ? ::ocimaria::trace::NoteCall(__func__, #__VA_ARGS__, __VA_ARGS__) : nullptr)

}  // namespace ocimaria::trace
