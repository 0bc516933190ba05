#include "guard/guard_end.h"

#include <cstdint>
#include <optional>
#include <string>

#include "guard/screen_lock.h"
#include "main/ending.h"
#include "main/globals.h"
#include "main/replies.h"
#include "platform/loop.h"
#include "platform/process.h"

namespace driver {

namespace {

/// How long the guard lives on after its last line, so that the screen has locked before the covers
/// go. In microseconds, like all that follow.
constexpr std::uint32_t lastMoments = 500'000;

// As long as a service may take for its last line: meanwhile no event of the tap is served.
constexpr std::uint32_t readerPatience = endingMicroseconds;

/// How long the system may take to lock. Whoever has waited so long goes without.
constexpr std::uint32_t lockPatience = 2'000'000;

// The system disables a tap whose events wait for a second, and the main flow may sleep for half a
// one beside this.
constexpr std::uint32_t mainFlowPatience = 450'000;

// A tap may be holding up all of the user's input since the round before.
constexpr std::uint32_t stuckLockPatience = 750'000;

/// Writes a line of the guard. A reader that does not take it at once goes without: the guard never
/// waits for its reader, since it must go on watching.
void emitGuardLine(const Reply& line) { emitWithin(line, readerPatience); }

void tellEnd(std::string_view by, bool relocked) {
  emitGuardLine({{"ok", true}, {"relocked", relocked}, {"by", std::string(by)}});
}

/// Ends a guard whose main flow has not waited long enough for the lock, and goes on serving its
/// tap.
[[noreturn]] void endOnceLocked(const std::string& by) {
  const auto accepted = lockAcceptedWithin(lockPatience - mainFlowPatience);
  tellEnd(by, accepted.value_or(false));
  loop::sleepMicroseconds(lastMoments);
  process::exit(0);
}

void leaveTheEndToAnotherFlow(std::string_view by) {
  loop::startTask([reason = std::string(by)] { endOnceLocked(reason); });
}

}  // namespace

// The end comes from the main flow's next round, not from here: the tap's event is answered first,
// or the system would let the input through that has ended the guard.
void endInGrace() {
  globals().guardRelocking = true;
  emitGuardLine({{"ok", true}, {"by", "grace"}});
  loop::postToMain([] { process::exit(0); });
}

// Not by `lockAndExit`, which sleeps: until the end the tap goes on swallowing what comes.
void endAtReturn() {
  globals().guardRelocking = true;
  beginLocking();
  const std::optional<bool> accepted = lockAcceptedWithin(mainFlowPatience);
  if (!accepted) return leaveTheEndToAnotherFlow("user");
  tellEnd("user", *accepted);
  loop::scheduleOnMain(lastMoments, 1, [] { process::exit(0); });
}

void lockAndExit(std::string_view by) {
  if (!globals().guardExiting.exchange(true)) {
    beginLocking();
    if (const std::optional<bool> accepted = lockAcceptedWithin(mainFlowPatience)) {
      tellEnd(by, *accepted);
    } else {
      globals().guardAwaitsLock = true;
      leaveTheEndToAnotherFlow(by);
    }
  }
  if (globals().guardAwaitsLock) loop::park();
  loop::sleepMicroseconds(lastMoments);
  process::exit(0);
}

void lockAtAnyExit() {
  process::onExit([] {
    if (globals().guardExiting || globals().guardRelocking) return;
    beginLocking();
    lockAcceptedWithin(lockPatience);
    loop::sleepMicroseconds(lastMoments);
  });
}

void lockInLastAct() {
  lockScreenInLastAct();
  loop::sleepMicroseconds(lastMoments);
}

void awaitStuckMainFlow(std::uint32_t firstMicroseconds) {
  for (std::uint32_t patience = firstMicroseconds; loop::awaitRound(patience);) {
    patience = roundMicroseconds;
  }
}

void endInPlaceOfMainFlow() {
  if (globals().guardExiting.exchange(true)) return;
  beginLocking();
  const std::optional<bool> accepted = lockAcceptedWithin(stuckLockPatience);
  tellEnd("loop", accepted.value_or(false));
  if (accepted) loop::sleepMicroseconds(lastMoments);
  process::exit(0);
}

void failInPlaceOfMainFlow(const std::string& message) {
  emitGuardLine(refusal(message));
  process::exit(1);
}

}  // namespace driver
