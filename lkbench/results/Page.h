// SPDX-License-Identifier: Apache-2.0
// report.html: one file that carries the run and the chart library and fetches nothing. Pure functions.
#pragma once

#include <string>
#include <string_view>

namespace lkbench {

// The page of a run.json. `json` is what the file holds; the page's script reads it from there.
std::string RunPage(std::string_view json);

// The page of a comparison, as `lkbench compare --json` writes it.
std::string ComparisonPage(std::string_view json);

// JSON that stands inside a script element: the same values, no "<" that could end the element.
std::string JsonInPage(std::string_view json);

}  // namespace lkbench
