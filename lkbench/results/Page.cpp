// SPDX-License-Identifier: Apache-2.0
#include "lkbench/results/Page.h"

#include <array>
#include <utility>

#include "lkbench/page/PageParts.h"

namespace lkbench {
namespace {

using Hole = std::pair<std::string_view, std::string_view>;  // its name in the template, what goes there

// The holes are in the template's order. What goes into one is not searched for others.
template <size_t N>
std::string Fill(std::string_view text, const std::array<Hole, N>& holes) {
  std::string page;
  for (const auto& [name, content] : holes) {
    const size_t place = text.find(name);
    page.append(text.substr(0, place)).append(content);
    text.remove_prefix(place + name.size());
  }
  return page.append(text);
}

// `begin` is the function of the script that fills the page.
std::string PageOf(std::string_view begin, std::string_view json) {
  const std::string data = JsonInPage(json);
  return Fill<5>(PageTemplate(), {{{"@@STYLE@@", PageStyle()},
                                   {"@@DATA@@", data},
                                   {"@@CHARTS@@", PageCharts()},
                                   {"@@SCRIPT@@", PageScript()},
                                   {"@@BEGIN@@", begin}}});
}

}  // namespace

std::string JsonInPage(std::string_view json) {
  std::string text;
  text.reserve(json.size());
  for (const char c : json) {
    if (c == '<')
      text += "\\u003c";  // inside a JSON text only: JSON itself has no such character
    else
      text += c;
  }
  return text;
}

std::string RunPage(std::string_view json) { return PageOf("reportPage", json); }
std::string ComparisonPage(std::string_view json) { return PageOf("comparisonPage", json); }

}  // namespace lkbench
