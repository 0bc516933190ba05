#include "platform/macos/core_foundation.h"

#include <cmath>

#include "platform/macos/utf16.h"

namespace macos {

namespace {

// The bounds of 64 bits that a double can hold exactly.
constexpr double lowestWhole = -9223372036854775808.0;
constexpr double aboveWhole = 9223372036854775808.0;

std::optional<std::int64_t> wholeNumber(double value) {
  if (!(value >= lowestWhole && value < aboveWhole) || std::trunc(value) != value) {
    return std::nullopt;
  }
  return static_cast<std::int64_t>(value);
}

}  // namespace

Owned<CFStringRef> string(std::string_view text) {
  const std::u16string units = utf16(text);
  return Owned(CFStringCreateWithCharacters(kCFAllocatorDefault,
                                            reinterpret_cast<const UniChar*>(units.data()),
                                            static_cast<CFIndex>(units.size())));
}

std::string utf8(CFStringRef string) {
  const CFIndex length = CFStringGetLength(string);
  std::u16string units(static_cast<std::size_t>(length), u'\0');
  CFStringGetCharacters(string, {0, length}, reinterpret_cast<UniChar*>(units.data()));
  return utf8(std::u16string_view(units));
}

Owned<CFNumberRef> number(std::int64_t value) {
  return Owned(CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt64Type, &value));
}

Owned<CFNumberRef> number(double value) {
  return Owned(CFNumberCreate(kCFAllocatorDefault, kCFNumberDoubleType, &value));
}

Owned<CFArrayRef> array(const std::vector<CFTypeRef>& objects) {
  // The function takes a pointer to non-constant elements, which it only reads.
  return Owned(CFArrayCreate(kCFAllocatorDefault, const_cast<const void**>(objects.data()),
                             static_cast<CFIndex>(objects.size()), &kCFTypeArrayCallBacks));
}

std::optional<std::int64_t> wholeNumber(CFTypeRef object) {
  const auto number = cast<CFNumberRef>(object, CFNumberGetTypeID());
  if (number == nullptr) return std::nullopt;
  if (CFNumberIsFloatType(number)) return wholeNumber(real(object).value_or(NAN));
  std::int64_t value = 0;
  if (!CFNumberGetValue(number, kCFNumberSInt64Type, &value)) return std::nullopt;
  return value;
}

std::optional<double> real(CFTypeRef object) {
  const auto number = cast<CFNumberRef>(object, CFNumberGetTypeID());
  if (number == nullptr) return std::nullopt;
  double value = 0;
  // False only says that the conversion was not exact, and every number has a nearest double.
  CFNumberGetValue(number, kCFNumberDoubleType, &value);
  return value;
}

std::optional<bool> boolean(CFTypeRef object) {
  const auto boolean = cast<CFBooleanRef>(object, CFBooleanGetTypeID());
  if (boolean != nullptr) return CFBooleanGetValue(boolean) != 0;
  const std::optional<double> value = real(object);
  if (value == 0.0) return false;
  if (value == 1.0) return true;
  return std::nullopt;
}

std::optional<std::string> text(CFTypeRef object) {
  const auto string = cast<CFStringRef>(object, CFStringGetTypeID());
  if (string == nullptr) return std::nullopt;
  return utf8(string);
}

}  // namespace macos
