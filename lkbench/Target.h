// SPDX-License-Identifier: Apache-2.0
// A Target says which database is meant and which OCI library reaches it. A value; ParseTarget throws
// UsageError. ReadPassword is the only place where a password enters the program.
#pragma once

#include <filesystem>
#include <string>

namespace lkbench {

enum class TargetKind { kLocal, kMariaDb, kOracle };

struct Target {
  TargetKind kind = TargetKind::kLocal;
  std::string text;              // as written, for messages
  std::filesystem::path folder;  // local: where the private server lives
  std::string server;            // otherwise: what the driver connects to
  std::string user;
};

// An empty text is the default: local: in $XDG_DATA_HOME or ~/.local/share, folder lkbench/db.
Target ParseTarget(const std::string& text, const std::string& place);

// The password that "env:NAME", "file:PATH" or "prompt" stands for; an empty source is no password.
std::string ReadPassword(const std::string& source);
void RequireTerminal();  // throws what a prompt throws where there is none to ask on

}  // namespace lkbench
