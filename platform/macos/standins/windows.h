#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <cstddef>

namespace standins {

/// What the window server gives; null for nothing. Kept until the books are closed.
void setWindows(CFArrayRef windows);
void setSession(CFDictionaryRef session);

/// The main display's mode; without one, and for any other display, there is none.
void setDisplayMode(std::size_t width, std::size_t pixelWidth);
void removeDisplayMode();

void setCaptureAccess(bool granted);

/// How often this process has connected to the window server.
int connections();

inline constexpr CGDirectDisplayID mainDisplay = 5;

}  // namespace standins
