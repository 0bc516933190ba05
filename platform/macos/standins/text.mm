#include "platform/macos/standins/text.h"

#include <unicode/unistr.h>

#include "platform/macos/standins/strings.h"

namespace standins {

NSString* foundationText(std::string_view text) {
  const auto units =
      icu::UnicodeString::fromUTF8({text.data(), static_cast<std::int32_t>(text.size())});
  return (__bridge_transfer NSString*)string(
      {units.getBuffer(), static_cast<std::size_t>(units.length())});
}

NSString* optionalText(const std::optional<std::string>& text) {
  if (!text) return nil;
  return foundationText(*text);
}

std::string plainText(NSString* string) {
  if (string == nil) return "";
  const std::u16string units = unitsOf((__bridge CFStringRef)string);
  std::string text;
  return icu::UnicodeString(units.data(), static_cast<std::int32_t>(units.size()))
      .toUTF8String(text);
}

}  // namespace standins
