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

}  // namespace

std::size_t utf16Length(std::string_view text) {
  std::size_t units = 0;
  for (std::size_t i = 0; i < text.size(); i += extentOf(text[i]).bytes) {
    units += extentOf(text[i]).units;
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
