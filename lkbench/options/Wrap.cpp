// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/Wrap.h"

#include <sstream>

namespace lkbench {

std::string Wrapped(const std::string& text, const std::string& indent) {
  std::string wrapped;
  size_t column = indent.size();
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    const bool fits = column + 1 + word.size() <= kTextWidth;
    if (!wrapped.empty()) wrapped += fits ? " " : "\n" + indent;
    column = (fits ? column + 1 : indent.size()) + word.size();
    wrapped += word;
  }
  return wrapped + '\n';
}

}  // namespace lkbench
