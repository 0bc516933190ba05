#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace standins {

/// A new error with this description; nil for an empty one.
NSError* errorSaying(std::string_view description);

/// Ends the process as an exception does that nobody catches.
[[noreturn]] void raise(const std::string& reason);

}  // namespace standins
