// SPDX-License-Identifier: Apache-2.0
// Any text as a job file.
#include <cctype>
#include <cstdint>
#include <optional>
#include <string>

#include "Require.h"
#include "lkbench/Failure.h"
#include "lkbench/JobFile.h"

namespace fuzz {
namespace {

using namespace lkbench;

constexpr std::size_t kLongestMessage = 600;
const std::string kPath = "job.toml";

// "job.toml:LINE: " with a line of the text, and what is wrong there.
void RequirePlace(std::string_view message, std::string_view text) {
  Require(message.starts_with(kPath + ":"), "a message names the file");
  message.remove_prefix(kPath.size() + 1);
  const std::size_t end = message.find(": ");
  Require(end != message.npos && end > 0 && end + 2 < message.size(), "a message says what is wrong");
  const std::string_view line = message.substr(0, end);
  Require(std::ranges::all_of(line, [](char c) { return c >= '0' && c <= '9'; }), "a message names the line");
  const auto lines = std::ranges::count(text, '\n') + 1;
  Require(line.size() < 9 && std::stol(std::string(line)) >= 1 && std::stol(std::string(line)) <= lines,
          "the line is one of the text");
}

template <class Call>
void RequireDoneOrRefused(Call&& call, std::string_view text) {
  try {
    call();
  } catch (const UsageError& error) {
    RequireOneLine(error.what(), kLongestMessage);
    RequirePlace(error.what(), text);
  }
}

void RequireLimits(const Job& job) {
  Require(job.users >= 1 && job.users <= 1000, "users are within their limits");
  Require(job.duration >= job.duration.zero(), "a run takes time, or a count");
  Require(job.scale >= 0 && job.scale <= 1e9, "the scale is within its limits");
  Require(job.tables >= 1 && job.tables <= 100000, "tables are within their limits");
  Require(job.rows_per_commit >= 1 && job.rows_per_commit <= 1000, "a commit has rows");
  Require(job.mix.insert + job.mix.update + job.mix.remove > 0, "a mix has a transaction");
  Require(!job.column_types.empty(), "tables have columns");
  for (const Limit& limit : job.limits) Require(limit.bound >= 0, "a limit is a bound that can be kept to");
  for (const std::string* text : {&job.target, &job.password, &job.results, &job.json, &job.plugin, &job.oci})
    Require(std::ranges::none_of(*text, IsControl), "what names something holds no control characters");
}

std::optional<Job> Read(const std::string& text) {
  std::optional<Job> read;
  RequireDoneOrRefused(
      [&] {
        Job job;
        ReadJobText(job, text, kPath);
        read = job;
      },
      text);
  return read;
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace fuzz;
  const std::string text(reinterpret_cast<const char*>(data), size);
  const auto job = Read(text);
  Require(job.has_value() == Read(text).has_value(), "a file is taken or refused every time");
  if (!job) return 0;
  RequireLimits(*job);
  for (const Verbs verb : {kRunVerb, kLoadVerb, kDropVerb})
    RequireDoneOrRefused([&] { CheckJob(*job, verb); }, text);
  return 0;
}
