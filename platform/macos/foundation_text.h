#pragma once

#import <Foundation/Foundation.h>

#include <optional>
#include <string>
#include <string_view>

#include "platform/macos/core_foundation.h"

namespace macos {

/// The text as Foundation has it.
inline NSString* foundationString(std::string_view text) {
  return (__bridge_transfer NSString*)string(text).release();
}

/// The string as UTF-8; none for nil.
inline std::optional<std::string> optionalText(NSString* string) {
  if (string == nil) return std::nullopt;
  return utf8((__bridge CFStringRef)string);
}

/// The string as UTF-8; empty for nil.
inline std::string textOrEmpty(NSString* string) { return optionalText(string).value_or(""); }

}  // namespace macos
