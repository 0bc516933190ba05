#include "base/utf16.h"

#include <algorithm>
#include <cstdint>

namespace driver {

namespace {

/// Of the character that a lead byte begins.
struct Extent {
  std::size_t bytes;
  std::size_t units;
};

Extent extentOf(char lead) {
  const auto byte = static_cast<std::uint8_t>(lead);
  if (byte < 0x80) return {1, 1};
  if (byte < 0xE0) return {2, 1};
  return byte < 0xF0 ? Extent{3, 1} : Extent{4, 2};
}

constexpr char32_t firstBeyondOneUnit = 0x10000;

/// The code point of a character of this many bytes at the beginning of the text.
char32_t codePoint(std::string_view text, std::size_t bytes) {
  const auto lead = static_cast<std::uint8_t>(text[0]);
  char32_t point = bytes == 1 ? lead : lead & (0x7Fu >> bytes);
  for (std::size_t i = 1; i < bytes; ++i) {
    point = (point << 6) | (static_cast<std::uint8_t>(text[i]) & 0x3Fu);
  }
  return point;
}

}  // namespace

std::u16string utf16(std::string_view text) {
  std::u16string units;
  units.reserve(text.size());
  while (!text.empty()) {
    const std::size_t bytes = extentOf(text[0]).bytes;
    const char32_t point = codePoint(text, bytes);
    text.remove_prefix(bytes);
    if (point < firstBeyondOneUnit) {
      units += static_cast<char16_t>(point);
      continue;
    }
    const char32_t offset = point - firstBeyondOneUnit;
    units += static_cast<char16_t>(0xD800 + (offset >> 10));
    units += static_cast<char16_t>(0xDC00 + (offset & 0x3FF));
  }
  return units;
}

std::size_t utf16Length(std::string_view text) {
  // Byte by byte, and not from character to character: so a text that is cut off is counted too.
  std::size_t units = 0;
  for (const char c : text) {
    const auto byte = static_cast<std::uint8_t>(c);
    if (byte < 0x80 || byte >= 0xC0) units += byte >= 0xF0 && byte <= 0xF4 ? 2 : 1;
  }
  return units;
}

std::size_t utf16Offset(std::string_view text, std::size_t units) {
  std::size_t offset = 0;
  while (offset < text.size()) {
    const Extent extent = extentOf(text[offset]);
    if (units < extent.units) break;
    units -= extent.units;
    offset += extent.bytes;
  }
  return std::min(offset, text.size());
}

std::string utf16Replaced(std::string_view text, std::size_t location, std::size_t length,
                          std::string_view replacement) {
  const std::size_t begin = utf16Offset(text, location);
  const std::size_t end = utf16Offset(text, location + length);
  std::string replaced(text.substr(0, begin));
  replaced += replacement;
  replaced += text.substr(end);
  return replaced;
}

std::string_view utf16Suffix(std::string_view text, std::size_t units) {
  const std::size_t whole = utf16Length(text);
  return whole <= units ? text : text.substr(utf16Offset(text, whole - units));
}

}  // namespace driver
