#include "guard/lock_guard.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include "guard/cover_view.h"
#include "guard/covers.h"
#include "guard/display_hold.h"
#include "guard/grace.h"
#include "guard/guard_end.h"
#include "guard/guard_tap.h"
#include "guard/input_lines.h"
#include "guard/screen_lock.h"
#include "main/globals.h"
#include "platform/cover.h"
#include "platform/loop.h"
#include "platform/process.h"
#include "platform/streams.h"
#include "platform/workspace.h"

namespace driver {

namespace {

constexpr std::uint32_t countdownStep = 1'000'000;  // microseconds

/// From here on neither a fault of its own, nor a signal that nobody handles, nor a reader that has
/// gone ends the guard before the screen is locked, and no terminal stops it.
void armLock() {
  prepareScreenLock();
  process::onFatalSignal([] { lockScreenNow(); });
  process::ignoreBrokenPipes();
  process::ignoreStops();
}

/// Nor do the signals that are there to end it. They are heard once the application runs: nothing
/// that may take its time comes between.
void lockAtSignals() {
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
  lookUpCoverPictures();
  lockAtSignals();
  const std::size_t covers = coverScreens();
  watchForReturn();
  beginGrace();
  lockAtAnyExit();
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
