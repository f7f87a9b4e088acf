// SPDX-License-Identifier: Apache-2.0
// Any text as a declared column type.
#include <cstdint>
#include <string>

#include "Require.h"
#include "oci/mariadb/OraError.h"
#include "oci/mariadb/sql/OracleType.h"
#include "oci/mariadb/sql/StorageType.h"
#include "oci/mariadb/sql/Tokenizer.h"

namespace fuzz {
namespace {

using namespace ocimaria::sql;

// The server's limit of the comment of a column.
constexpr std::size_t kMostComment = 1024;
constexpr std::size_t kMostRow = 65535;

void RequireTextOfItsOwn(const OracleType& type) {
  const std::string text = TypeText(type);
  Require(ParseOracleType(text) == type, "a type reads back from its text");
  Require(TypeText(ParseOracleType(text)) == text, "a type has one text");
  Require(FromColumnComment(ColumnComment(type)) == type, "a type reads back from its comment");
  const std::string named = ColumnComment(type, "Name");
  Require(FromColumnComment(named) == type, "a type reads back from a comment that holds a name");
  Require(NameInColumnComment(named) == "Name", "a name reads back from its comment");
  Require(ColumnComment(type).size() <= kMostComment, "a comment holds every type");
}

void RequireDescription(const OracleType& type) {
  const TypeDescription bytes = Describe(type, 1);
  const TypeDescription characters = Describe(type, 4);
  Require(bytes.data_type != 0, "a type has a code");
  Require(bytes.data_type == characters.data_type, "the character set decides no code");
  Require(bytes.data_size <= characters.data_size, "wider characters take no fewer bytes");
  Require(characters.data_size <= 4 * 4000, "no value is larger than its column");
  Require(bytes.char_used == (type.counts_characters ? 1 : 0), "a describe says what a length counts");
}

void RequireStorage(const OracleType& type) {
  Require(!StorageType(type).empty(), "a type is stored");
  Require(RowBytes(type) <= kMostRow, "one column fits a row");
  try {
    Require(!CastType(type).empty(), "a cast names a type");
  } catch (const ocimaria::OraError& error) {
    Require(error.Code() == 3001, "a cast that cannot be had is refused as such");
  }
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace fuzz;
  const std::string text(reinterpret_cast<const char*>(data), size);
  try {
    const OracleType type = ParseOracleType(text);
    RequireTextOfItsOwn(type);
    RequireDescription(type);
    RequireStorage(type);
    if (text.find('"') == text.npos)
      Require(FromColumnComment("ora:" + text) == type, "a comment is read as a type is");
  } catch (const ocimaria::OraError& error) {
    Require(!error.Text().empty(), "a refusal has a text");
    if (text.find('"') == text.npos)
      Require(!FromColumnComment("ora:" + text), "a comment is read as a type is");
  }
  return 0;
}
