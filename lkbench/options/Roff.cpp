// SPDX-License-Identifier: Apache-2.0
#include "lkbench/options/Roff.h"

namespace lkbench {

std::string Roff(const std::string& text) {
  std::string quoted;
  for (const char c : text) {
    if (c == '\\')
      quoted += "\\e";
    else if (c == '-')
      quoted += "\\-";
    else if (c == '\'')
      quoted += "\\(aq";
    else if (c == '^')
      quoted += "\\(ha";
    else if (c == '~')
      quoted += "\\(ti";
    else if (c == '\n')
      quoted += "\n\\&";
    else
      quoted += c;
  }
  return text.starts_with('.') ? "\\&" + quoted : quoted;
}

std::string Bold(const std::string& text) { return "\\fB" + Roff(text) + "\\fR"; }
std::string Italic(const std::string& text) { return "\\fI" + Roff(text) + "\\fR"; }

std::string Heading(const std::string& title) { return ".SH " + title + '\n'; }
std::string SubHeading(const std::string& title) { return ".SS " + title + '\n'; }
std::string Entry(const std::string& head, const std::string& text) {
  return ".TP\n" + head + '\n' + (text.empty() ? "" : text + '\n');
}
std::string Literal(const std::string& text) { return ".PP\n.nf\n.RS 4\n\\&" + Roff(text) + "\n.RE\n.fi\n"; }

std::string PageTitle(const char* name, int section, const char* manual) {
  return std::string(".TH ") + name + ' ' + std::to_string(section) + " \"\" \"lkbench " + LKBENCH_VERSION +
         "\" \"" + manual + "\"\n";
}

}  // namespace lkbench
