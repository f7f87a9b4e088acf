// SPDX-License-Identifier: Apache-2.0
// Which replication table an execution works on, told by the statements that its thread prepares: a
// transaction keeps its choice to itself. Each thread has a note of its own.
#pragma once

#include <string_view>

namespace lkbench {

// Called with every statement's text before it is prepared.
void NoteStatement(std::string_view text);

// The table that a statement of this thread named since the last call: its number, 0 when none did.
int TakeTable();

// The number behind the first LK_REP_TABLE of a text, 0 when it has none.
int TableNumberIn(std::string_view text);

}  // namespace lkbench
