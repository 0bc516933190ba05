#pragma once

#include <CoreGraphics/CoreGraphics.h>

namespace standins {

/// Where the pointer is.
void setPointer(CGPoint point);

/// Whether the system refuses to create events and sources.
void refuseEvents(bool refuse);

}  // namespace standins
