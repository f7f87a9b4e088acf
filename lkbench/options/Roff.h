// SPDX-License-Identifier: Apache-2.0
// The parts of a manual page in roff. Texts are printed as they stand. Pure functions.
#pragma once

#include <string>

namespace lkbench {

std::string Roff(const std::string& text);
std::string Bold(const std::string& text);
std::string Italic(const std::string& text);

// The rest take and give roff.
std::string PageTitle(const char* name, int section, const char* manual);
std::string Heading(const std::string& title);
std::string SubHeading(const std::string& title);
std::string Entry(const std::string& head, const std::string& text);  // indented behind its head
std::string Literal(const std::string& text);                         // lines as they are; a text

}  // namespace lkbench
