#pragma once

#import <Foundation/Foundation.h>

#include <optional>
#include <string>
#include <string_view>

/// What stand-ins say to adapters and hear from them, by none of the adapters' own conversions.
namespace standins {

/// The text as a new string.
NSString* foundationText(std::string_view text);

/// The same; nil for none.
NSString* optionalText(const std::optional<std::string>& text);

/// The string as UTF-8; empty for nil.
std::string plainText(NSString* string);

}  // namespace standins
