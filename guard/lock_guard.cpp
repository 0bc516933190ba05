#include "guard/lock_guard.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "guard/cover_view.h"
#include "guard/covers.h"
#include "guard/display_hold.h"
#include "guard/grace.h"
#include "guard/screen_lock.h"
#include "input/input_report.h"
#include "main/globals.h"
#include "main/replies.h"
#include "platform/cover.h"
#include "platform/loop.h"
#include "platform/process.h"
#include "platform/quartz.h"
#include "platform/streams.h"
#include "platform/workspace.h"

namespace driver {

namespace {

constexpr std::uint32_t readerPatience = 250'000;  // microseconds

using quartz::EventType;
using tap::Verdict;

constexpr std::uint64_t returnMask =
    tap::maskOf(EventType::leftMouseDown) | tap::maskOf(EventType::rightMouseDown) |
    tap::maskOf(EventType::otherMouseDown) | tap::maskOf(EventType::mouseMoved) |
    tap::maskOf(EventType::keyDown) | tap::maskOf(EventType::scrollWheel);

/// Input that was under way when grace began is no answer to it.
constexpr double firstSeconds = 1;

void endInGrace() {
  globals().guardRelocking = true;
  emitGuardLine({{"ok", true}, {"by", "grace"}});
  loop::postToMain([] { process::exit(0); });
}

void lockAndEndSoon() {
  globals().guardRelocking = true;
  const bool relocked = lockScreenNow();
  emitGuardLine({{"ok", true}, {"relocked", relocked}, {"by", "user"}});
  loop::scheduleOnMain(lastMoments, 1, [] { process::exit(0); });
}

bool isMovement(const tap::Event& event) {
  return event.type == static_cast<std::uint32_t>(EventType::mouseMoved);
}

constexpr std::string_view operatingWord = "operating";
constexpr std::string_view mindingWord = "minding";

bool isBlank(char c) { return c == ' ' || c == '\t'; }

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

void emitGuardLine(const Reply& line) { emitWithin(line, readerPatience); }

void lockAndExit(std::string_view by) {
  if (!std::exchange(globals().guardExiting, true)) {
    const bool relocked = lockScreenNow();
    emitGuardLine({{"ok", true}, {"relocked", relocked}, {"by", std::string(by)}});
  }
  loop::sleepMicroseconds(lastMoments);
  process::exit(0);
}

void lockAtAnyExit() {
  process::onExit([] {
    if (!globals().guardExiting && !globals().guardRelocking) lockScreenNow();
  });
}

Verdict guardVerdict(const tap::Event& event) {
  if (isDisabledNotice(event)) {
    if (globals().guardTap) tap::enable(*globals().guardTap);
    return Verdict::pass;
  }
  if (!isUsersInput(event)) return Verdict::pass;
  if (globals().guardRelocking) return Verdict::swallow;
  const double left = hasGrace() ? graceLeft() : 0;
  if (left <= 0) {
    lockAndEndSoon();
  } else if (!isMovement(event) && left <= globals().guardGrace - firstSeconds) {
    endInGrace();
  }
  return Verdict::swallow;
}

void watchForReturn() {
  globals().guardTap = tap::create(tap::Place::head, tap::Kind::filters, returnMask, guardVerdict);
  if (!globals().guardTap) {
    fail("cannot watch for the user's return: accessibility permission is missing");
  }
  tap::attach(*globals().guardTap);
  tap::enable(*globals().guardTap);
}

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
