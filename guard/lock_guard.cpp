#include "guard/lock_guard.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>
#include <utility>

#include "guard/cover_pictures.h"
#include "guard/covers.h"
#include "guard/display_hold.h"
#include "guard/grace.h"
#include "guard/guard_end.h"
#include "guard/guard_tap.h"
#include "guard/screen_lock.h"
#include "main/ending.h"
#include "main/globals.h"
#include "main/replies.h"
#include "platform/cover.h"
#include "platform/loop.h"
#include "platform/process.h"
#include "platform/streams.h"
#include "platform/workspace.h"

namespace driver {

namespace {

// The platform keeps what listens to them.
constexpr std::array guardSignals = {process::Signal::terminate, process::Signal::interrupt,
                                     process::Signal::hangUp};

constexpr std::uint32_t countdownStep = 1'000'000;  // microseconds

constexpr std::string_view operatingWord = "operating";
constexpr std::string_view mindingWord = "minding";

/// What the system asks when it wants the application to terminate.
class GuardQuit {
 public:
  /// Locks and ends in place of an answer.
  [[noreturn]] void applicationShouldTerminate() const { lockAndExit("quit"); }
};

constexpr GuardQuit guardQuit;

/// From here on neither a fault of its own, nor a signal that nobody handles, nor a reader that has
/// gone ends the guard before the screen is locked, and no terminal stops it.
void armLock() {
  prepareScreenLock();
  process::onFatalSignal(lockInLastAct);
  process::ignoreBrokenPipes();
  process::ignoreStops();
}

/// Nor do the signals that are there to end it. They are heard once the application runs: nothing
/// that may take its time comes between.
void lockAtSignals() {
  process::handleSignals(guardSignals, [](process::Signal) { lockAndExit("signal"); });
}

void beginGrace() {
  startGrace();
  if (hasGrace()) {
    loop::scheduleOnMain(countdownStep, countdownSteps(globals().guardGrace), refreshGuardHints);
  }
}

/// The first line; a reader that does not take it at once goes without.
void tellStart(std::size_t covers, bool isHeld) {
  emitWithin({{"ok", true}, {"covers", static_cast<std::int64_t>(covers)}, {"keepAwake", isHeld}},
             endingMicroseconds);
}

void setWantedOperating() {
  std::optional<bool> operating;
  {
    const std::lock_guard lock(globals().mutex);
    operating = std::exchange(globals().guardWantsOperating, std::nullopt);
  }
  if (operating) setGuardOperating(*operating);
}

/// One piece of work waits for the main flow at most: a flood of lines must not keep it from its
/// tap.
void wantOperating(bool operating) {
  {
    const std::lock_guard lock(globals().mutex);
    if (std::exchange(globals().guardWantsOperating, operating)) return;
  }
  loop::postToMain(setWantedOperating);
}

/// Reads what the agent says. It asks the main flow for everything it wants done.
void readGuardInput() {
  GuardInput input;
  for (;;) {
    const platform::Bytes bytes = streams::readAvailable();
    if (bytes.empty()) break;
    if (const auto operating = input.feed(bytes)) wantOperating(*operating);
  }
  // An agent that has gone, or that closes its end, minds the Mac no longer.
  loop::postToMain([] { lockAndExit("run"); });
}

bool isBlank(char c) { return c == ' ' || c == '\t'; }

}  // namespace

void lockGuard() {
  armLock();
  const bool isHeld = holdDisplayAwake(
                          "Zentrove Desk screen cover: keeps the display awake while the cover "
                          "hides this unlocked Mac; any key or mouse movement locks it") != 0;
  // Before the first window: covers must not take the foreground from what lies beneath.
  workspace::prohibitOwnActivation();
  // The directory service may keep it waiting, and signals must be able to end it until then.
  lookUpCoverPictures();
  lockAtSignals();
  const std::size_t covers = coverScreens();
  watchForReturn();
  standByToLock();
  beginGrace();
  // Not earlier: a guard that may not watch fails, and has hidden nothing for long.
  lockAtAnyExit();
  tellStart(covers, isHeld);
  cover::onTerminationRequest([] { guardQuit.applicationShouldTerminate(); });
  followScreens();
  loop::startTask(readGuardInput);
  cover::runApplication();
  lockAndExit("loop");
}

void lockGuardCommand(const Arguments& /*arguments*/) { lockGuard(); }

// Ill-formed bytes are like any others: repaired or not, they are in neither word.
void GuardInput::add(char c) {
  if (isOther_) return;
  if (isBlank(c)) {
    blankBehind_ = !word_.empty();
    return;
  }
  isOther_ = blankBehind_ || word_.size() == operatingWord.size();
  if (!isOther_) word_ += c;
}

std::optional<bool> GuardInput::meaning() const {
  if (isOther_) return std::nullopt;
  if (word_ == operatingWord) return true;
  if (word_ == mindingWord) return false;
  return std::nullopt;
}

std::optional<bool> GuardInput::feed(std::string_view bytes) {
  std::optional<bool> last;
  for (const char c : bytes) {
    if (c != '\n') {
      add(c);
      continue;
    }
    if (const std::optional<bool> said = meaning()) last = said;
    *this = {};
  }
  return last;
}

}  // namespace driver
