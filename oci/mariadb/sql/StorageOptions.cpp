// SPDX-License-Identifier: Apache-2.0
#include "oci/mariadb/sql/StorageOptions.h"

#include <algorithm>
#include <array>

#include "oci/mariadb/sql/Unimplemented.h"

namespace ocimaria::sql {
namespace {

enum class Argument { kNone, kOne, kOptionalNumber, kParentheses };

struct Option {
  std::string_view first, second, third;  // its words, as many as it has
  Argument argument;
};

constexpr auto kOptions = std::to_array<Option>({
    {"TABLESPACE", "", "", Argument::kOne},
    {"PCTFREE", "", "", Argument::kOne},
    {"PCTUSED", "", "", Argument::kOne},
    {"PCTTHRESHOLD", "", "", Argument::kOne},
    {"INITRANS", "", "", Argument::kOne},
    {"MAXTRANS", "", "", Argument::kOne},
    {"STORAGE", "", "", Argument::kParentheses},
    {"LOGGING", "", "", Argument::kNone},
    {"NOLOGGING", "", "", Argument::kNone},
    {"FILESYSTEM_LIKE_LOGGING", "", "", Argument::kNone},
    {"COMPRESS", "", "", Argument::kOptionalNumber},
    {"NOCOMPRESS", "", "", Argument::kNone},
    {"CACHE", "", "", Argument::kNone},
    {"NOCACHE", "", "", Argument::kNone},
    {"PARALLEL", "", "", Argument::kOptionalNumber},
    {"NOPARALLEL", "", "", Argument::kNone},
    {"MONITORING", "", "", Argument::kNone},
    {"NOMONITORING", "", "", Argument::kNone},
    {"ROWDEPENDENCIES", "", "", Argument::kNone},
    {"NOROWDEPENDENCIES", "", "", Argument::kNone},
    {"ORGANIZATION", "HEAP", "", Argument::kNone},
    {"ORGANIZATION", "INDEX", "", Argument::kNone},
    {"SEGMENT", "CREATION", "IMMEDIATE", Argument::kNone},
    {"SEGMENT", "CREATION", "DEFERRED", Argument::kNone},
    {"ENABLE", "ROW", "MOVEMENT", Argument::kNone},
    {"DISABLE", "ROW", "MOVEMENT", Argument::kNone},
    {"COMPUTE", "STATISTICS", "", Argument::kNone},
    {"ONLINE", "", "", Argument::kNone},
    {"REVERSE", "", "", Argument::kNone},
});

// Behind the words of the option; `i` itself when they do not stand there.
std::size_t SkipWords(const PieceList& pieces, std::size_t i, const Option& option) {
  std::size_t at = i;
  for (const auto word : {option.first, option.second, option.third}) {
    if (word.empty()) break;
    if (!pieces.IsWord(at, word)) return i;
    ++at;
  }
  return at;
}

std::size_t SkipArgument(const PieceList& pieces, std::size_t at, Argument argument) {
  switch (argument) {
    case Argument::kNone:
      return at;
    case Argument::kOne:
      if (at >= pieces.Size()) throw OraError(922);
      return at + 1;
    case Argument::kOptionalNumber:
      return pieces.Kind(at) == TokenKind::kNumber ? at + 1 : at;
    case Argument::kParentheses:
      if (!pieces.IsSymbol(at, "(")) throw OraError(906);
      return pieces.ClosingOf(at) + 1;
  }
  return at;
}

bool BeginsConstraintState(const PieceList& pieces, std::size_t i) {
  return pieces.AreWords(i, {"USING", "INDEX"}) || pieces.AreWords(i, {"NOT", "DEFERRABLE"}) ||
         pieces.IsAnyWord(
             i, {"INITIALLY", "ENABLE", "VALIDATE", "NOVALIDATE", "RELY", "NORELY", "DISABLE", "DEFERRABLE"});
}

// USING INDEX, then an index of its own in parentheses or by name, then its storage.
std::size_t SkipUsingIndex(const PieceList& pieces, std::size_t i, std::size_t end) {
  std::size_t at = i + 2;
  if (pieces.IsSymbol(at, "(")) {
    at = pieces.ClosingOf(at) + 1;
  } else if (at < end && pieces.IsName(at) && SkipStorageOption(pieces, at) == at &&
             !BeginsConstraintState(pieces, at)) {
    ++at;
  }
  for (std::size_t next = SkipStorageOption(pieces, at); next != at; next = SkipStorageOption(pieces, at))
    at = next;
  return at;
}

}  // namespace

std::size_t SkipStorageOption(const PieceList& pieces, std::size_t i) {
  for (const Option& option : kOptions) {
    const std::size_t at = SkipWords(pieces, i, option);
    if (at != i) return SkipArgument(pieces, at, option.argument);
  }
  return i;
}

std::size_t SkipConstraintState(const PieceList& pieces, std::size_t i, std::size_t end) {
  if (pieces.AreWords(i, {"USING", "INDEX"})) return SkipUsingIndex(pieces, i, end);
  if (pieces.AreWords(i, {"NOT", "DEFERRABLE"}) || pieces.AreWords(i, {"INITIALLY", "IMMEDIATE"}))
    return i + 2;
  if (pieces.IsAnyWord(i, {"ENABLE", "VALIDATE", "NOVALIDATE", "RELY", "NORELY"})) return i + 1;
  if (pieces.IsWord(i, "DISABLE")) throw Unimplemented("a disabled constraint");
  if (pieces.IsAnyWord(i, {"DEFERRABLE", "INITIALLY"})) throw Unimplemented("a deferred constraint");
  return i;
}

void RemoveConstraintStates(PieceList& pieces, std::size_t begin, std::size_t end) {
  for (std::size_t i = begin; i < end;) {
    if (pieces.IsSymbol(i, "(")) i = pieces.ClosingOf(i);
    const std::size_t behind = SkipConstraintState(pieces, i, end);
    if (behind == i) {
      ++i;
    } else {
      pieces.Remove(i, behind);
      i = behind;
    }
  }
}

}  // namespace ocimaria::sql
