#include "guard/display_hold.h"

#include "main/replies.h"
#include "platform/loop.h"
#include "platform/power.h"
#include "platform/process.h"
#include "platform/types.h"

namespace driver {

// Nobody gives the hold back: the system ends it with the process, however that goes.
std::uint32_t holdDisplayAwake(const std::string& reason) {
  const power::Assertion assertion = power::preventDisplaySleep(reason);
  return assertion.status == platform::statusSuccess ? assertion.id : 0;
}

void keepAwakeCommand(const Arguments& /*arguments*/) {
  const bool isHeld = holdDisplayAwake(
                          "Zentrove Desk: keeps the display awake, without a screen cover, until "
                          "this hold is released") != 0;
  emit({{"ok", isHeld}, {"keepAwake", isHeld}});
  if (!isHeld) process::exit(1);
  loop::park();
}

}  // namespace driver
