// SPDX-License-Identifier: Apache-2.0
#include "core/Utf8.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsCharacter(char32_t c) { return c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF); }

// Length of the sequence that a byte starts; 0 when it starts none.
size_t SequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  if (lead >= 0xF0 && lead < 0xF5) return 4;
  return 0;
}

// The character that starts the text, and how many bytes it takes; one replaced byte when there is none.
std::pair<char32_t, size_t> Decode(std::string_view text) {
  constexpr std::array<unsigned char, 5> kLeadBits{0, 0x7F, 0x1F, 0x0F, 0x07};
  constexpr std::array<char32_t, 5> kSmallest{0, 0, 0x80, 0x800, 0x10000};
  const auto lead = static_cast<unsigned char>(text[0]);
  const size_t length = SequenceLength(lead);
  if (length == 0 || length > text.size()) return {kReplacement, 1};
  char32_t c = lead & kLeadBits[length];
  for (size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(text[i]);
    if ((next & 0xC0) != 0x80) return {kReplacement, 1};
    c = (c << 6) | (next & 0x3F);
  }
  if (c < kSmallest[length] || !IsCharacter(c)) return {kReplacement, 1};
  return {c, length};
}

void Encode(char32_t c, std::string& out) {
  const auto put = [&out](char32_t byte) { out += static_cast<char>(byte); };
  const auto tail = [&put, c](int shift) { put(0x80 | ((c >> shift) & 0x3F)); };
  if (c < 0x80) {
    put(c);
  } else if (c < 0x800) {
    put(0xC0 | (c >> 6));
    tail(0);
  } else if (c < 0x10000) {
    put(0xE0 | (c >> 12));
    tail(6);
    tail(0);
  } else {
    put(0xF0 | (c >> 18));
    tail(12);
    tail(6);
    tail(0);
  }
}

constexpr size_t kBlock = 16;  // characters that are handled together: the compiler makes one step of them

// How many characters of the start are ASCII, which is the same in both: nearly always all of them.
template <class Char>
size_t PlainLength(std::basic_string_view<Char> text) {
  const auto isOther = [](Char c) { return (static_cast<uint32_t>(c) & ~uint32_t{0x7F}) != 0; };
  size_t nLength = 0;
  while (text.size() - nLength >= kBlock) {
    uint32_t nBits = 0;
    for (size_t i = 0; i < kBlock; ++i) nBits |= static_cast<uint32_t>(text[nLength + i]);
    if ((nBits & ~uint32_t{0x7F}) != 0) break;
    nLength += kBlock;
  }
  while (nLength < text.size() && !isOther(text[nLength])) ++nLength;
  return nLength;
}

// The ASCII characters that start the text.
template <class Other, class Char>
std::basic_string<Other> PlainCopy(std::basic_string_view<Char> text, size_t nPlain) {
  std::basic_string<Other> copy(nPlain, Other());
  Other* const pCopy = copy.data();
  size_t nDone = 0;
  for (; nPlain - nDone >= kBlock; nDone += kBlock) {
    std::array<Other, kBlock> block;  // of its own, so that the compiler need not look for an overlap
    for (size_t i = 0; i < kBlock; ++i) block[i] = static_cast<Other>(text[nDone + i]);
    std::memcpy(pCopy + nDone, block.data(), sizeof block);
  }
  for (; nDone < nPlain; ++nDone) pCopy[nDone] = static_cast<Other>(text[nDone]);
  return copy;
}

}  // namespace

std::wstring LKWideFromUtf8(std::string_view text) {
  const size_t nPlain = PlainLength(text);
  std::wstring wide = PlainCopy<wchar_t>(text, nPlain);
  if (nPlain == text.size()) return wide;
  text.remove_prefix(nPlain);
  wide.reserve(wide.size() + text.size());
  while (!text.empty()) {
    const auto [c, length] = Decode(text);
    wide += static_cast<wchar_t>(c);
    text.remove_prefix(length);
  }
  return wide;
}

std::string LKUtf8FromWide(std::wstring_view text) {
  const size_t nPlain = PlainLength(text);
  std::string narrow = PlainCopy<char>(text, nPlain);
  if (nPlain == text.size()) return narrow;
  text.remove_prefix(nPlain);
  for (const wchar_t wide : text) {
    const auto c = static_cast<char32_t>(wide);
    Encode(IsCharacter(c) ? c : kReplacement, narrow);
  }
  return narrow;
}
