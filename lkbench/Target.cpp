// SPDX-License-Identifier: Apache-2.0
#include "lkbench/Target.h"

#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdlib>

#include "lkbench/Failure.h"
#include "lkbench/Text.h"

namespace lkbench {
namespace {

std::filesystem::path DataFolder() {
  const char* data = std::getenv("XDG_DATA_HOME");
  if (data != nullptr && *data == '/') return data;
  const char* home = std::getenv("HOME");
  if (home == nullptr || *home == 0) {
    const passwd* entry = getpwuid(getuid());
    home = entry == nullptr ? nullptr : entry->pw_dir;
  }
  if (home == nullptr || *home == 0)
    throw UsageError("no home folder is known for the default target: give one, as --target local:DIR");
  return std::filesystem::path(home) / ".local" / "share";
}

Target LocalTarget(const std::string& text, const std::filesystem::path& folder) {
  Target target;
  target.text = text;
  target.folder = std::filesystem::absolute(folder).lexically_normal();
  return target;
}

struct Account {
  std::string user;
  std::string rest;
};

std::string Decoded(const std::string& text) {
  std::string decoded;
  for (size_t i = 0; i < text.size(); ++i) {
    unsigned code = 0;
    const char* digits = text.c_str() + i + 1;
    const bool escaped = text[i] == '%' && i + 2 < text.size() &&
                         std::from_chars(digits, digits + 2, code, 16).ptr == digits + 2;
    decoded += escaped ? static_cast<char>(code) : text[i];
    if (escaped) i += 2;
  }
  return decoded;
}

// Splits "user@rest"; `example` shows the right form.
Account SplitAccount(const std::string& text, const std::string& place, const std::string& example) {
  const size_t at = text.find('@');
  const std::string user = text.substr(0, at);
  if (at != std::string::npos && (user.find(':') != std::string::npos || user.find('/') != std::string::npos))
    throw UsageError(place +
                     ": the target holds a password, which never stands there: use --password env:NAME, "
                     "file:PATH or prompt");
  if (at == std::string::npos || user.empty())
    throw UsageError(place + ": the target names no user: the form is " + example);
  const std::string decoded = Decoded(user);
  if (std::ranges::any_of(decoded, IsControl))
    throw UsageError(place + ": the user's name holds a control character: the form is " + example);
  return {decoded, text.substr(at + 1)};
}

}  // namespace

Target ParseTarget(const std::string& text, const std::string& place) {
  const std::string mariadb = "mariadb://", oracle = "oracle://", local = "local:";
  if (text.empty() || text == local) return LocalTarget(local, DataFolder() / "lkbench" / "db");
  if (text.starts_with(local)) return LocalTarget(text, text.substr(local.size()));
  Target target;
  target.text = text;
  if (text.starts_with(mariadb)) {
    const Account account =
        SplitAccount(text.substr(mariadb.size()), place, "mariadb://USER@HOST:PORT/SCHEMA");
    target.kind = TargetKind::kMariaDb;
    target.user = account.user;
    target.server = mariadb + account.rest;
    return target;
  }
  if (text.starts_with(oracle)) {
    const Account account = SplitAccount(text.substr(oracle.size()), place, "oracle://USER@CONNECT");
    if (account.rest.empty())
      throw UsageError(place + ": the target names no database: the form is oracle://USER@CONNECT");
    target.kind = TargetKind::kOracle;
    target.user = account.user;
    target.server = account.rest;
    return target;
  }
  throw UsageError(place + ": target \"" + Excerpt(text) +
                   "\" is not understood: it starts with local:, mariadb:// or oracle://");
}

}  // namespace lkbench
