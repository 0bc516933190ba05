#include "guard/lock_guard.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include "guard/covers.h"
#include "guard/display_hold.h"
#include "guard/grace.h"
#include "guard/guard_end.h"
#include "guard/guard_tap.h"
#include "guard/input_lines.h"
#include "guard/screen_lock.h"
#include "platform/cover.h"
#include "platform/loop.h"
#include "platform/process.h"
#include "platform/streams.h"
#include "platform/workspace.h"

namespace driver {

namespace {

constexpr std::uint32_t countdownStep = 1'000'000;  // microseconds

/// From here on neither a signal, nor a reader that has gone, nor a fault of its own ends the guard
/// before the screen is locked.
void armLock() {
  prepareScreenLock();
  process::onFatalFault([] { lockScreenNow(); });
  process::ignoreBrokenPipes();
  constexpr std::array signals = {process::Signal::terminate, process::Signal::interrupt,
                                  process::Signal::hangUp};
  process::handleSignals(signals, [](process::Signal) { lockAndExit("signal"); });
}

void beginGrace() {
  startGrace();
  if (hasGrace()) {
    loop::scheduleOnMain(countdownStep, countdownSteps(globals().guardGrace), refreshGuardHints);
  }
}

/// Reads what the agent says. It asks the main flow for everything it wants done.
void readGuardInput() {
  GuardInput input;
  for (;;) {
    const platform::Bytes bytes = streams::readAvailable();
    if (bytes.empty()) break;
    if (const auto operating = input.feed(bytes)) {
      loop::postToMain([operating = *operating] { setGuardOperating(operating); });
    }
  }
  loop::postToMain([] { lockAndExit("run"); });
}

}  // namespace

void lockGuard() {
  armLock();
  const bool isHeld = holdDisplayAwake(
                          "Zentrove Desk screen cover: keeps the display awake while the cover "
                          "hides this unlocked Mac; any key or mouse movement locks it") != 0;
  workspace::prohibitOwnActivation();
  const std::size_t covers = coverScreens();
  watchForReturn();
  beginGrace();
  emitGuardLine(
      {{"ok", true}, {"covers", static_cast<std::int64_t>(covers)}, {"keepAwake", isHeld}});
  cover::onTerminationRequest(GuardQuit::applicationShouldTerminate);
  followScreens();
  loop::startTask(readGuardInput);
  cover::runApplication();
  lockAndExit("loop");
}

void lockGuardCommand(const Arguments& /*arguments*/) { lockGuard(); }

}  // namespace driver
