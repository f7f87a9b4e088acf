// SPDX-License-Identifier: Apache-2.0
// The types of those job keys whose values have a form of their own.
#pragma once

#include "lkbench/Job.h"
#include "lkbench/options/KeyTypes.h"

namespace lkbench {

KeyType<Phase> MixWeights();    // { insert = 40, update = 40, delete = 20 } or insert=40,update=40,delete=20
KeyType<Job> ColumnTypeList();  // tables { type, weight, nullable }, or texts TYPE:WEIGHT:null
// Of the private server. Their texts are empty for another target, which does not take them.
KeyType<Job> ServerDurability();
KeyType<Job> ServerSize(std::uint64_t localdb::Settings::*member, std::uint64_t low, std::uint64_t high);

KeyType<Job> PasswordSource();  // env:NAME, file:PATH or prompt, never a password

}  // namespace lkbench
