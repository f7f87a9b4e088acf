// SPDX-License-Identifier: Apache-2.0
// A JobValue is one value of a job as it was written, in a file, a flag or an environment variable, with the
// place where it stands.
// The readers below turn it into a setting or throw UsageError: place, key, what was given, what is allowed.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace lkbench {

struct JobValue {
  struct Field;
  using Table = std::vector<Field>;
  using List = std::vector<JobValue>;

  std::string key;
  std::string place;  // "job.toml:3", "--users" or "LKBENCH_USERS"
  std::variant<std::string, std::int64_t, double, bool, Table, List> value;
  bool is_flag = false;  // text of a flag or variable: a reader may take it for a number

  std::int64_t Integer(std::int64_t low, std::int64_t high) const;
  double Percent() const;         // at least 0, of a text such as 5%
  double Real(double low) const;  // finite and at least `low`
  bool Boolean() const;
  const std::string& Text() const;            // not empty, without control characters
  std::chrono::nanoseconds Duration() const;  // above 0
  std::chrono::nanoseconds DurationOrZero() const;
  std::uint64_t Size(std::uint64_t low, std::uint64_t high) const;  // bytes, whole mebibytes
  size_t OneOf(const std::vector<std::string>& names) const;

  std::string Shown() const;  // as it was given, shortened
  [[noreturn]] void Refuse(const std::string& allowed) const;
};

struct JobValue::Field {
  std::string name;
  JobValue value;
};

}  // namespace lkbench
