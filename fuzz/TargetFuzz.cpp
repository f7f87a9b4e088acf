// SPDX-License-Identifier: Apache-2.0
// Any text as a target of lkbench. Where targets come from, a text with control characters is refused before.
#include <cstdint>
#include <string>

#include "Require.h"
#include "lkbench/Failure.h"
#include "lkbench/Target.h"

namespace fuzz {
namespace {

using namespace lkbench;

constexpr std::size_t kLongestMessage = 300;

void RequireLocal(const Target& target) {
  Require(target.folder.is_absolute(), "the folder of a local server is absolute");
  Require(target.folder == target.folder.lexically_normal(), "the folder of a local server has one name");
  Require(target.user.empty() && target.server.empty(), "a local server is found by its folder");
}

void RequireRemote(const Target& target, std::string_view text) {
  Require(target.folder.empty(), "a server elsewhere has no folder");
  Require(!target.user.empty() && !target.server.empty(), "a server elsewhere has a user and a name");
  const bool is_mariadb = target.kind == TargetKind::kMariaDb;
  const std::string scheme = is_mariadb ? "mariadb://" : "oracle://";
  Require(text.starts_with(scheme), "a scheme decides the kind");
  const std::string rest = (is_mariadb ? "" : scheme) + target.server;
  Require(text.ends_with(is_mariadb ? std::string_view(target.server).substr(scheme.size()) : target.server),
          "the rest behind the user comes through as it is");
}

std::string Message(const std::string& text) {
  try {
    ParseTarget(text, "--target");
  } catch (const UsageError& error) {
    return error.what();
  }
  return {};
}

// What stands between the first ":" behind the scheme and the "@" may be a password.
void RequireNoPassword(std::string_view message, const std::string& text) {
  const std::size_t begin = text.find(':', text.find("://") + 3);
  const std::size_t at = text.find('@');
  if (begin == text.npos || at == text.npos || at <= begin) return;
  std::string other = text;
  std::fill(other.begin() + static_cast<std::ptrdiff_t>(begin) + 1,
            other.begin() + static_cast<std::ptrdiff_t>(at), 'x');
  Require(Message(other) == message, "of a password nothing is repeated");
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace fuzz;
  const std::string text(reinterpret_cast<const char*>(data), size);
  if (std::ranges::any_of(text, IsControl)) return -1;
  try {
    const Target target = ParseTarget(text, "--target");
    Require(std::ranges::none_of(target.user, IsControl), "a user's name holds no control characters");
    if (target.kind == TargetKind::kLocal) {
      RequireLocal(target);
    } else {
      RequireRemote(target, text);
    }
  } catch (const UsageError& error) {
    RequireOneLine(error.what(), kLongestMessage);
    Require(std::string_view(error.what()).starts_with("--target: "), "a message names the place");
    if (text.starts_with("mariadb://") || text.starts_with("oracle://"))
      RequireNoPassword(error.what(), text);
  }
  return 0;
}
