// SPDX-License-Identifier: Apache-2.0
// Conversion between the host's wide text and UTF-8, which is what everything narrow is: SQL texts, column
// names, reports. Neither direction fails: what is no character becomes U+FFFD. Any thread.
#pragma once

#include <string>
#include <string_view>

// Each byte that does not belong to a well-formed sequence becomes one U+FFFD.
std::wstring LKWideFromUtf8(std::string_view text);

std::string LKUtf8FromWide(std::wstring_view text);
