// SPDX-License-Identifier: Apache-2.0
// Cuts Oracle SQL and PL/SQL text into tokens, in time linear in its length. White space and comments are no
// tokens: they are the gap before the token that follows. Tokens point into the text, which must outlive
// them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "oci/mariadb/sql/NotedWords.h"

namespace ocimaria::sql {

enum class TokenKind : std::uint8_t {
  kWord,         // a name or keyword, unquoted
  kQuotedName,   // "Name", quotes included
  kString,       // '..', N'..', q'[..]', NQ'[..]', quotes and prefix included
  kNumber,       // 12, 1.5, .5, 1e-3
  kPlaceholder,  // :NAME, :1, :"Name"
  kSymbol,       // an operator or punctuation mark
};

struct Token {
  TokenKind kind;
  NotedWord noted;        // of a word
  std::string_view gap;   // white space and comments before it
  std::string_view text;  // as written
};

struct TokenList {
  std::vector<Token> tokens;
  NotedWords noted;       // those that occur
  std::string_view tail;  // white space and comments after the last token
};

// Throws OraError: ORA-01756 for an open quote, ORA-01740 for an open quoted name, ORA-01741 for an empty
// one, ORA-01742 for an open comment, ORA-01745 for a colon without a name.
TokenList Tokenize(std::string_view sql);

// The characters that a string token stands for.
std::string StringValue(std::string_view literal);

}  // namespace ocimaria::sql
