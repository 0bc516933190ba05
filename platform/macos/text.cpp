#include "platform/text.h"

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>

#include "platform/macos/core_foundation.h"
#include "platform/macos/utf16.h"

namespace text {

namespace {

using macos::Owned;

constexpr CFIndex unlimited = 0;

// Spaces of any width, and tabs.
bool isBlank(char16_t unit) {
  constexpr std::u16string_view others = u"\t \u00A0\u1680\u202F\u205F\u3000";
  return (unit >= 0x2000 && unit <= 0x200A) || others.find(unit) != std::u16string_view::npos;
}

bool isWhiteSpace(char16_t unit) {
  constexpr std::u16string_view breaks = u"\n\v\f\r\u0085\u2028\u2029";
  return isBlank(unit) || breaks.find(unit) != std::u16string_view::npos;
}

Owned<CFMutableStringRef> mutableString(std::string_view text) {
  const Owned<CFStringRef> string = macos::string(text);
  return Owned(CFStringCreateMutableCopy(kCFAllocatorDefault, unlimited, string.get()));
}

Owned<CFMutableStringRef> normalized(std::string_view text, CFStringNormalizationForm form) {
  Owned<CFMutableStringRef> string = mutableString(text);
  CFStringNormalize(string.get(), form);
  return string;
}

Owned<CFMutableStringRef> decomposed(std::string_view text) {
  return normalized(text, kCFStringNormalizationFormD);
}

// Core Foundation counts a carriage return and its line feed as two.
bool isLineEndPair(std::u16string_view units, std::size_t start) {
  return units.substr(start, 2) == u"\r\n";
}

// Where the character that starts at `start` ends.
std::size_t characterEnd(CFStringRef string, std::u16string_view units, std::size_t start) {
  if (isLineEndPair(units, start)) return start + 2;
  const CFRange range =
      CFStringGetRangeOfComposedCharactersAtIndex(string, static_cast<CFIndex>(start));
  return static_cast<std::size_t>(range.location + range.length);
}

}  // namespace

std::string lowercase(std::string_view text) {
  const Owned<CFMutableStringRef> string = mutableString(text);
  CFStringLowercase(string.get(), nullptr);
  return macos::utf8(string.get());
}

bool equal(std::string_view a, std::string_view b) {
  return a == b || CFEqual(decomposed(a).get(), decomposed(b).get()) != 0;
}

std::string canonical(std::string_view text) {
  return macos::utf8(normalized(text, kCFStringNormalizationFormC).get());
}

std::vector<std::string> characters(std::string_view text) {
  const std::u16string units = macos::utf16(text);
  const Owned<CFStringRef> string = macos::string(text);
  std::vector<std::string> characters;
  std::size_t start = 0;
  while (start < units.size()) {
    const std::size_t end = characterEnd(string.get(), units, start);
    characters.push_back(macos::utf8(std::u16string_view(units).substr(start, end - start)));
    start = end;
  }
  return characters;
}

std::string prefix(std::string_view text, std::size_t count) {
  // A character has at least one byte.
  if (text.size() <= count) return std::string(text);
  const std::u16string units = macos::utf16(text);
  const Owned<CFStringRef> string = macos::string(text);
  std::size_t end = 0;
  for (std::size_t taken = 0; taken < count && end < units.size(); ++taken) {
    end = characterEnd(string.get(), units, end);
  }
  return macos::utf8(std::u16string_view(units).substr(0, end));
}

std::string trimmedBlanks(std::string_view text) {
  const std::u16string units = macos::utf16(text);
  const auto first = std::find_if_not(units.begin(), units.end(), isBlank);
  const auto last = std::find_if_not(units.rbegin(), units.rend(), isBlank).base();
  return first < last ? macos::utf8(std::u16string(first, last)) : "";
}

std::vector<std::string> words(std::string_view text) {
  const std::u16string units = macos::utf16(text);
  std::vector<std::string> words;
  auto rest = units.begin();
  while ((rest = std::find_if_not(rest, units.end(), isWhiteSpace)) != units.end()) {
    const auto end = std::find_if(rest, units.end(), isWhiteSpace);
    words.push_back(macos::utf8(std::u16string(rest, end)));
    rest = end;
  }
  return words;
}

}  // namespace text
