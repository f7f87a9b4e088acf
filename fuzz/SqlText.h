// SPDX-License-Identifier: Apache-2.0
// What can be told of a rewritten statement from its tokens alone, without the rewriter's own passes: counts,
// and for statements without any word that is rewritten the whole text.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "oci/mariadb/sql/Tokenizer.h"

namespace fuzz {

using ocimaria::sql::TokenKind;
using ocimaria::sql::TokenList;

std::size_t CountOf(const TokenList& list, TokenKind kind);
std::size_t CountOf(const TokenList& list, std::string_view text);
bool HasAnyWord(const TokenList& list, std::initializer_list<std::string_view> upper);

// What the string literals stand for, and the comments without what opens them.
std::vector<std::string> StringsOf(const TokenList& list);
std::vector<std::string> CommentsOf(const TokenList& list);
// `parts` stand in `whole` in their order, with others between them.
bool IsWithin(const std::vector<std::string>& parts, const std::vector<std::string>& whole);

// No word of it is rewritten, and no column of a result would lose its name by what is.
bool IsPlain(const TokenList& list);
// The text of a plain statement as the server is given it: placeholders, prefixed literals, ^=, names with #
// and comments put right, everything else as it stands.
std::string PlainText(const TokenList& list);

}  // namespace fuzz
