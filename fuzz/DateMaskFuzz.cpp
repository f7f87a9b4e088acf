// SPDX-License-Identifier: Apache-2.0
// Any two lines as a date mask and a date text.
#include <cstdint>
#include <string>

#include "Require.h"
#include "oci/mariadb/OraError.h"
#include "oci/mariadb/sql/DateMask.h"

namespace fuzz {
namespace {

using ocimaria::OraError;
using ocimaria::sql::DateMask;

constexpr std::string_view kCanonical = "dddd-dd-dd dd:dd:dd.dddddd";

bool IsCanonical(std::string_view date) {
  const auto fits = [](char c, char form) { return form == 'd' ? c >= '0' && c <= '9' : c == form; };
  return (date.size() == 19 || date.size() == 26) &&
         std::ranges::equal(date, kCanonical.substr(0, date.size()), fits);
}

void RequireOneForm(const DateMask& mask, std::string_view text) {
  const std::string date = mask.ToCanonical(text);
  Require(IsCanonical(date), "a date comes out in the form that the server reads");
  Require((date.size() == 26) == mask.HasFraction(), "a fraction comes out where the mask has one");
  const DateMask canonical(mask.HasFraction() ? "YYYY-MM-DD HH24:MI:SS.FF6" : "YYYY-MM-DD HH24:MI:SS");
  Require(canonical.ToCanonical(date) == date, "a date in its form is itself");
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view lines(reinterpret_cast<const char*>(data), size);
  const std::size_t end = std::min(lines.find('\n'), lines.size());
  const std::string_view text = lines.substr(std::min(end + 1, lines.size()));
  try {
    const fuzz::DateMask mask(lines.substr(0, end));
    fuzz::RequireOneForm(mask, text);
    fuzz::Require(mask.ToServerFormat().size() <= 3 * end,
                  "a format of the server is about as long as its mask");
  } catch (const fuzz::OraError& error) {
    fuzz::Require(!error.Text().empty(), "a refusal has a text");
  }
  return 0;
}
