// SPDX-License-Identifier: Apache-2.0
#include "lkbench/display/Width.h"

#include <clocale>
#include <cwchar>

namespace lkbench {
namespace {

// The C library tells widths by the locale of the calling thread; this one is there on every system.
class Utf8Locale {
 public:
  Utf8Locale() : m_before(uselocale(Shared())) {}
  ~Utf8Locale() { uselocale(m_before); }
  Utf8Locale(const Utf8Locale&) = delete;
  Utf8Locale& operator=(const Utf8Locale&) = delete;

 private:
  static locale_t Shared() {
    static const locale_t locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return locale;
  }
  locale_t m_before;
};

struct Character {
  std::size_t bytes;
  std::size_t columns;
};

Character FirstOf(std::string_view text) {
  if (static_cast<unsigned char>(text.front()) < 0x80) return {1, 1};
  std::mbstate_t state{};
  wchar_t wide = 0;
  const std::size_t bytes = std::mbrtowc(&wide, text.data(), text.size(), &state);
  if (bytes == 0 || bytes > text.size()) return {1, 1};
  const int columns = wcwidth(wide);
  return {bytes, columns < 0 ? 1 : static_cast<std::size_t>(columns)};
}

constexpr std::size_t kIndent = 2;

// Takes a line from the front of the text.
std::string_view TakeLine(std::string_view& text, std::size_t columns) {
  std::size_t end = CutToWidth(text, columns).size();
  if (end < text.size() && text[end] != ' ') {
    const std::size_t blank = text.rfind(' ', end);
    end = blank != std::string_view::npos && blank > 0 ? blank : text.find(' ', end);
  }
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(std::min(text.size(), line.size() + 1));
  return line;
}

std::string FoldedLine(std::string_view line, std::size_t columns) {
  if (columns <= kIndent || line.find("  ") != std::string_view::npos) return std::string(line);
  std::string folded(TakeLine(line, columns));
  while (!line.empty()) folded.append("\n").append(kIndent, ' ').append(TakeLine(line, columns - kIndent));
  return folded;
}

}  // namespace

std::size_t DisplayWidth(std::string_view text) {
  const Utf8Locale locale;
  std::size_t columns = 0;
  while (!text.empty()) {
    const Character character = FirstOf(text);
    columns += character.columns;
    text.remove_prefix(character.bytes);
  }
  return columns;
}

std::string CutToWidth(std::string_view text, std::size_t columns) {
  const Utf8Locale locale;
  std::size_t taken = 0;
  while (taken < text.size()) {
    const Character character = FirstOf(text.substr(taken));
    if (character.columns > columns) break;
    columns -= character.columns;
    taken += character.bytes;
  }
  return std::string(text.substr(0, taken));
}

std::string Folded(std::string_view text, std::size_t columns) {
  std::string folded;
  while (true) {
    const std::size_t end = text.find('\n');
    folded += FoldedLine(text.substr(0, end), columns);
    if (end == std::string_view::npos) return folded;
    folded += '\n';
    text.remove_prefix(end + 1);
  }
}

}  // namespace lkbench
