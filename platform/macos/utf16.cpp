#include "platform/macos/utf16.h"

#include <cstddef>

#include "base/utf8.h"

namespace macos {

namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr char32_t firstBeyondOneUnit = 0x10000;

bool isHighSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
bool isLowSurrogate(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

char16_t takeUnit(std::u16string_view& text) {
  const char16_t unit = text.front();
  text.remove_prefix(1);
  return unit;
}

char32_t takeCharacter(std::u16string_view& text) {
  const char16_t first = takeUnit(text);
  if (isLowSurrogate(first)) return replacement;
  if (!isHighSurrogate(first)) return static_cast<char32_t>(first);
  if (text.empty() || !isLowSurrogate(text.front())) return replacement;
  const char16_t second = takeUnit(text);
  return firstBeyondOneUnit + ((first & 0x3FFu) << 10) + (second & 0x3FFu);
}

char continuation(char32_t bits) { return static_cast<char>(0x80 | (bits & 0x3F)); }

void append(std::string& text, char32_t character) {
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | (character >> 6));
    text += continuation(character);
  } else if (character < firstBeyondOneUnit) {
    text += static_cast<char>(0xE0 | (character >> 12));
    text += continuation(character >> 6);
    text += continuation(character);
  } else {
    text += static_cast<char>(0xF0 | (character >> 18));
    text += continuation(character >> 12);
    text += continuation(character >> 6);
    text += continuation(character);
  }
}

std::size_t sequenceLength(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead < 0xE0) return 2;
  return lead < 0xF0 ? 3 : 4;
}

// `text` is well-formed.
char32_t takeCharacter(std::string_view& text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t length = sequenceLength(lead);
  char32_t character = length == 1 ? lead : lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    character = (character << 6) | (static_cast<unsigned char>(text[i]) & 0x3Fu);
  }
  text.remove_prefix(length);
  return character;
}

void append(std::u16string& text, char32_t character) {
  if (character < firstBeyondOneUnit) {
    text += static_cast<char16_t>(character);
    return;
  }
  const char32_t offset = character - firstBeyondOneUnit;
  text += static_cast<char16_t>(0xD800 + (offset >> 10));
  text += static_cast<char16_t>(0xDC00 + (offset & 0x3FF));
}

}  // namespace

std::string utf8(std::u16string_view text) {
  std::string converted;
  converted.reserve(text.size());
  while (!text.empty()) append(converted, takeCharacter(text));
  return converted;
}

std::u16string utf16(std::string_view text) {
  const std::string repaired = driver::repairedUtf8(text);
  std::string_view rest = repaired;
  std::u16string converted;
  converted.reserve(rest.size());
  while (!rest.empty()) append(converted, takeCharacter(rest));
  return converted;
}

}  // namespace macos
