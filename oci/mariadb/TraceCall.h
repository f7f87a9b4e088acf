// SPDX-License-Identifier: Apache-2.0
// An exported call as the trace shows it: name, arguments, status, duration. Handles are shown by kind and
// number, numbers as they are, every other argument as "given" or "null": no memory of the caller is read.
#pragma once

#include <oci.h>

#include <chrono>
#include <concepts>
#include <string>
#include <tuple>

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

// Puts the next name of a list "a, b, c" and a value behind what is there, and takes the name off the list.
void AppendArgument(std::string& shown, std::string_view& names, const std::string& value);

// The name and the arguments of a call. Made by OCI_CALL; nothing is formatted before Text() is asked for.
template <class... Arguments>
struct Call {
  const char* name;
  const char* argument_names;
  std::tuple<Arguments...> arguments;

  std::string Text() const {
    std::string shown;
    std::string_view names = argument_names;
    std::apply([&](const auto&... each) { (AppendArgument(shown, names, Shown(each)), ...); }, arguments);
    return shown;
  }
};

template <class... Arguments>
Call<Arguments...> MakeCall(const char* name, const char* argument_names, Arguments... arguments) {
  return {name, argument_names, {arguments...}};
}

// The exported function that this stands in, with the arguments that are worth showing.
#define OCI_CALL(...) ::ocimaria::trace::MakeCall(__func__, #__VA_ARGS__, __VA_ARGS__)

using Clock = std::chrono::steady_clock;
Clock::time_point EnterCall(const char* name) noexcept;
void LeaveCall(Clock::time_point entered, const std::string& arguments, sword status);

// Runs `work` as this call while any tracing is on.
template <class Call, class Work>
sword Traced(const Call& call, Work&& work) noexcept {
  const auto entered = EnterCall(call.name);
  const sword status = work();
  Safely([&] { LeaveCall(entered, On(kCalls) ? call.Text() : std::string(), status); });
  return status;
}

}  // namespace ocimaria::trace
