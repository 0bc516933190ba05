#pragma once

#include <CoreGraphics/CoreGraphics.h>

namespace standins {

/// Whether the system gives no tap at all.
void refuseTaps(bool refuse);

/// Whether the user lets this process see keys. Without, the system takes them out of the mask of
/// every new tap.
void permitKeys(bool permit);

/// Whether the list of taps cannot be had.
void hideTaps(bool hide);

/// Sends an event, which may be null, through the newest tap; what comes out of it.
CGEventRef sendThroughTap(CGEventType type, CGEventRef event);

}  // namespace standins
