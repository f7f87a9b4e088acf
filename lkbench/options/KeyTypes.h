// SPDX-License-Identifier: Apache-2.0
// The types of keys: each binds a member of the owner to its reader with limits and to its text. Pure
// functions.
#pragma once

#include <limits>
#include <optional>

#include "lkbench/Text.h"
#include "lkbench/options/Key.h"
#include "lkbench/options/TomlText.h"

namespace lkbench {

template <class Owner, class Number>
KeyType<Owner> WholeNumber(Number Owner::*member, std::int64_t low,
                           std::int64_t high = std::numeric_limits<std::int32_t>::max()) {
  return {
      .form = {},
      .set = [=](Owner& owner,
                 const JobValue& value) { owner.*member = static_cast<Number>(value.Integer(low, high)); },
      .toml = [=](const Owner& owner) { return std::to_string(owner.*member); }};
}

// A number that may be left open.
template <class Owner, class Number>
KeyType<Owner> WholeNumber(std::optional<Number> Owner::*member, std::int64_t low,
                           std::int64_t high = std::numeric_limits<std::int32_t>::max()) {
  return {
      .form = {},
      .set = [=](Owner& owner,
                 const JobValue& value) { owner.*member = static_cast<Number>(value.Integer(low, high)); },
      .toml = [=](const Owner& owner) { return owner.*member ? std::to_string(*(owner.*member)) : ""; }};
}

template <class Owner>
KeyType<Owner> RealNumber(double Owner::*member, double low) {
  return {.form = {},
          .set = [=](Owner& owner, const JobValue& value) { owner.*member = value.Real(low); },
          .toml = [=](const Owner& owner) { return Short(owner.*member); }};
}

// "5%"; may be left open.
template <class Owner>
KeyType<Owner> Percent(std::optional<double> Owner::*member) {
  return {
      .form = {},
      .set = [=](Owner& owner, const JobValue& value) { owner.*member = value.Percent(); },
      .toml =
          [=](const Owner& owner) { return owner.*member ? TomlText(Short(*(owner.*member)) + "%") : ""; }};
}

template <class Owner>
KeyType<Owner> TimeSpan(std::chrono::nanoseconds Owner::*member) {
  return {.form = {},
          .set = [=](Owner& owner, const JobValue& value) { owner.*member = value.Duration(); },
          .toml = [=](const Owner& owner) { return TomlText(DurationText(owner.*member)); }};
}

template <class Owner>
KeyType<Owner> TimeSpanOrZero(std::chrono::nanoseconds Owner::*member) {
  KeyType<Owner> type = TimeSpan(member);
  type.set = [=](Owner& owner, const JobValue& value) { owner.*member = value.DurationOrZero(); };
  return type;
}

// Any text; an empty one is unset.
template <class Owner>
KeyType<Owner> Words(std::string Owner::*member) {
  return {.form = {},
          .set = [=](Owner& owner, const JobValue& value) { owner.*member = value.Text(); },
          .toml =
              [=](const Owner& owner) {
                return (owner.*member).empty() ? std::string() : TomlText(owner.*member);
              }};
}

template <class Owner>
KeyType<Owner> FileName(std::string Owner::*member) {
  KeyType<Owner> type = Words(member);
  type.form.is_file = true;
  return type;
}

template <class Owner>
KeyType<Owner> Switch(bool Owner::*member) {
  return {.form = {.shape = KeyShape::kSwitch},
          .set = [=](Owner& owner, const JobValue& value) { owner.*member = value.Boolean(); },
          .toml = [=](const Owner& owner) { return std::string(owner.*member ? "true" : "false"); }};
}

// One of some names; the member is a number or an enumeration in their order.
template <class Owner, class Number>
KeyType<Owner> OneOf(Number Owner::*member, const std::vector<std::string>& names) {
  return {.form = {.choices = names},
          .set = [=](Owner& owner,
                     const JobValue& value) { owner.*member = static_cast<Number>(value.OneOf(names)); },
          .toml = [=](const Owner& owner) { return TomlText(names.at(static_cast<size_t>(owner.*member))); }};
}

}  // namespace lkbench
