#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include "platform/ax.h"
#include "platform/macos/owned.h"

/// Accessibility values as the seam and as Core Foundation hold them.
namespace macos {

/// What an attribute holds. An error placed where the value would be, and a null object, give that
/// error; what is neither a value nor an error gives no value and `success`. `object` is borrowed
/// and may be null.
ax::Slot slot(CFTypeRef object);

/// The value as a new object; nothing when the platform cannot make one.
Owned<CFTypeRef> object(const ax::Value& value);

}  // namespace macos
