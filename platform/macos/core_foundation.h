#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/macos/owned.h"

/// Conversions between Core Foundation's objects and the seam's values. An object passed in is
/// borrowed; one that may be of any type may also be null.
namespace macos {

/// The text as a new string. Ill-formed parts become U+FFFD.
Owned<CFStringRef> string(std::string_view text);

/// The string as UTF-8. Surrogates without their partner become U+FFFD.
std::string utf8(CFStringRef string);

/// A new number.
Owned<CFNumberRef> number(std::int64_t value);
Owned<CFNumberRef> number(double value);

/// A new array of these objects, none of them null.
Owned<CFArrayRef> array(const std::vector<CFTypeRef>& objects);

/// What the object says when it is of the type asked for, and nothing otherwise.
/// A whole number; one with a fraction, or beyond 64 bits, is none.
std::optional<std::int64_t> wholeNumber(CFTypeRef object);
/// Any number.
std::optional<double> real(CFTypeRef object);
/// A Boolean, or the number 0 or 1.
std::optional<bool> boolean(CFTypeRef object);
/// A string.
std::optional<std::string> text(CFTypeRef object);

/// The object as a reference of another type when its type id is `type`, and null otherwise.
template <class Reference>
Reference cast(CFTypeRef object, CFTypeID type) {
  if (object == nullptr || CFGetTypeID(object) != type) return nullptr;
  return static_cast<Reference>(object);
}

}  // namespace macos
