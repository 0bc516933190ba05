#include "platform/power.h"

#include <IOKit/pwr_mgt/IOPMLib.h>

#include "platform/macos/core_foundation.h"
#include "platform/types.h"

namespace power {

static_assert(platform::statusSuccess == kIOReturnSuccess);

Assertion preventDisplaySleep(const std::string& name) {
  IOPMAssertionID id = 0;
  const IOReturn status =
      IOPMAssertionCreateWithName(kIOPMAssertionTypePreventUserIdleDisplaySleep,
                                  kIOPMAssertionLevelOn, macos::string(name).get(), &id);
  return {status, id};
}

}  // namespace power
