#pragma once

#import <AppKit/AppKit.h>

#include <string>

namespace standins {

/// A view with all that is on it, a line for each.
std::string describe(NSView* view);

}  // namespace standins
