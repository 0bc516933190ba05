#include "guard/lock_guard.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "guard/cover_pictures.h"
#include "guard/covers.h"
#include "guard/display_hold.h"
#include "guard/grace.h"
#include "guard/screen_lock.h"
#include "input/input_report.h"
#include "main/ending.h"
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

using quartz::EventType;
using tap::Verdict;

/// How long the guard lives on after its last line, so that the screen has locked before the covers
/// go. In microseconds.
constexpr std::uint32_t lastMoments = 500'000;

// As long as a service may take for its last line: meanwhile no event of the tap is served.
constexpr std::uint32_t readerPatience = endingMicroseconds;

constexpr std::uint32_t countdownStep = 1'000'000;  // microseconds

// What a user does on purpose. The release of a key or a button is not among it: one that was down
// when the guard began goes up without anybody's return.
constexpr std::uint64_t returnMask =
    tap::maskOf(EventType::leftMouseDown) | tap::maskOf(EventType::rightMouseDown) |
    tap::maskOf(EventType::otherMouseDown) | tap::maskOf(EventType::mouseMoved) |
    tap::maskOf(EventType::keyDown) | tap::maskOf(EventType::scrollWheel);

/// Input that was under way when grace began is no answer to it.
constexpr double firstSeconds = 1;

constexpr std::string_view operatingWord = "operating";
constexpr std::string_view mindingWord = "minding";

/// Writes a line of the guard. A reader that does not take it at once goes without: the guard never
/// waits for its reader, since it must go on watching.
void emitGuardLine(const Reply& line) { emitWithin(line, readerPatience); }

/// What the system asks when it wants the application to terminate.
class GuardQuit {
 public:
  /// Locks and ends in place of an answer.
  [[noreturn]] static void applicationShouldTerminate() { lockAndExit("quit"); }
};

// The end comes from the main flow's next round, not from here: the tap's event is answered first,
// or the system would let the input through that has ended the guard.
void endInGrace() {
  globals().guardRelocking = true;
  emitGuardLine({{"ok", true}, {"by", "grace"}});
  loop::postToMain([] { process::exit(0); });
}

// Not by `lockAndExit`, which sleeps: until the end the tap goes on swallowing what comes.
void lockAndEndSoon() {
  globals().guardRelocking = true;
  const bool relocked = lockScreenNow();
  emitGuardLine({{"ok", true}, {"relocked", relocked}, {"by", "user"}});
  loop::scheduleOnMain(lastMoments, 1, [] { process::exit(0); });
}

bool isMovement(const tap::Event& event) {
  return event.type == static_cast<std::uint32_t>(EventType::mouseMoved);
}

/// Watches the user's input with `guardVerdict` from now on. Fails when the system gives no tap.
void watchForReturn() {
  // At the head: nobody else may act on what is going to be swallowed.
  globals().guardTap = tap::create(tap::Place::head, tap::Kind::filters, returnMask, guardVerdict);
  if (!globals().guardTap) {
    fail("cannot watch for the user's return: accessibility permission is missing");
  }
  tap::attach(*globals().guardTap);
  tap::enable(*globals().guardTap);
}

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
  beginGrace();
  // Not earlier: a guard that may not watch fails, and has hidden nothing for long.
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

Verdict guardVerdict(const tap::Event& event) {
  if (isDisabledNotice(event)) {
    if (globals().guardTap) tap::enable(*globals().guardTap);
    return Verdict::pass;
  }
  // The agent goes on working behind the cover: its input is no return, and must reach its target.
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
