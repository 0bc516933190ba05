#include "simulator/rules/guard_state.h"

#include <signal.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "simulator/mac/arguments.h"

namespace simulator {

using platform::Function;

namespace {

/// A guard's main flow may be busy with its reader, or with the lock, when screens change.
constexpr Microseconds newScreenMax = 500'000;

/// A tap that falls silent tells nobody. The guard looks once a second, may wait another for the
/// answer, and then the login window takes its time.
constexpr Microseconds unwatchedMax = 2'500'000;

/// How long the guard waits for the system's answer to a lock before it says that there was none.
constexpr Microseconds lockPatience = 2'000'000;

constexpr Microseconds heldInputMax = 3'000'000;

constexpr std::uint64_t keyDown = tap::maskOf(quartz::EventType::keyDown);

bool isAboutTap(Function function) {
  return function == Function::axTrusted || function == Function::tapCanBeMade ||
         function == Function::tapIsEnabled;
}

/// Notes whether what should not be is so now. True once it has been so for longer than `until`.
bool lastsTooLong(bool isSo, std::optional<Microseconds>& since, Microseconds now,
                  Microseconds until) {
  const bool isTooLong = since && now > until;
  if (!isSo) {
    since.reset();
  } else if (!since) {
    since = now;
  }
  return isTooLong;
}

}  // namespace

bool GuardStateRules::isOwed() const { return began_ && !over_; }

// Another user's session in front shows nothing of this one.
bool GuardStateRules::isUnlocked() const { return run_.mac.world.session.isUsable(); }

bool GuardStateRules::isCovered() const {
  const World& world = run_.mac.world;
  return std::all_of(world.displays.begin(), world.displays.end(), [&](const Display& display) {
    return std::any_of(world.covers.begin(), world.covers.end(), [&](const Cover& cover) {
      return cover.owner == run_.client.pid && cover.frame == display.frame;
    });
  });
}

/// No news of screens is on its way to it.
bool GuardStateRules::knowsScreens() const {
  const auto& items = run_.client.items;
  return !misled_ && std::none_of(items.begin(), items.end(), [](const platform::WireItem& item) {
    return item.kind == platform::ItemKind::screenChange;
  });
}

// A dead tap hears nothing; but it holds all input, for which there is a limit of its own.
bool GuardStateRules::isWatched() const {
  const auto& taps = run_.mac.tapLine.taps;
  return std::any_of(taps.begin(), taps.end(), [&](const Tap& tap) {
    const bool works = tap.enabled && tap.isValid && (tap.mask & keyDown) != 0;
    return tap.owner == run_.client.pid && tap.filters && (works || tap.isDead);
  });
}

/// Until when the screens may be without all of their covers, by what has happened to them.
Microseconds GuardStateRules::coveredUntil() const {
  const Mac& mac = run_.mac;
  if (!mac.screensChanged) return 0;
  // Of a change before its first line the guard hears after that.
  const Microseconds heard = std::max(*mac.screensChanged, began_.value_or(0));
  const Microseconds known = std::max(heard + newScreenMax, answered_);
  // A guard that has asked for the lock by then leaves the screen to the login window.
  return lock_ && lock_->asked <= known ? std::max(known, lock_->due) : known;
}

void GuardStateRules::before(const ObservedCall& seen, Violations& violations) {
  checkHeldInput(violations);
  if (seen.call.function == Function::closePanel) checkClosing(violations);
  if (run_.command() != "lock-guard" || seen.call.function != Function::writeOutput) return;
  const auto line = nlohmann::json::parse(Arguments(seen.call).text(0), nullptr, false);
  if (!line.is_object()) return;  // another rule's
  if (line.contains("covers") && !began_) began_ = run_.mac.now;
  over_ = over_ || line.value("by", "") == "grace" || !line.value("relocked", true);
}

void GuardStateRules::after(const ObservedCall& seen, const Answer& answer,
                            Violations& /*violations*/) {
  if (seen.call.function == Function::screens) misled_ = seen.faulty;
  // The main flow waits for what it has asked the system about its tap.
  if (seen.flow == 0 && isAboutTap(seen.call.function)) {
    answered_ = run_.mac.now + std::min(answer.delay, unwatchedMax);
  }
  if (seen.call.function != Function::lockScreen) return;
  lockAnswered_ = run_.mac.now + std::min(answer.delay, lockPatience);
  lockAsked_ = lockAsked_ || driver::unpack<std::int32_t>(answer.value) == 0;
  noteLock();
}

/// Who unlocks the screen after that has given the password: it is no longer the guard's to hide.
void GuardStateRules::noteLock() {
  over_ = over_ || (lockAsked_ && run_.mac.world.session.locked.value_or(false));
}

/// An old cover may be all that hides a screen until it has its new one.
void GuardStateRules::checkClosing(Violations& violations) const {
  if (isOwed() && isUnlocked() && knowsScreens() && !isCovered()) {
    violations.push_back("I22: a cover goes before a screen has its new one");
  }
}

void GuardStateRules::checkHeldInput(Violations& violations) {
  const TapLine& line = run_.mac.tapLine;
  if (!line.hold || heldTold_) return;
  const bool isOwn = std::any_of(line.taps.begin(), line.taps.end(), [&](const Tap& tap) {
    return tap.owner == run_.client.pid && tap.number == line.hold->tap;
  });
  if (!isOwn || run_.mac.now - line.waiting.front().since <= heldInputMax) return;
  violations.push_back("I23: a tap holds the user's input for more than three seconds");
  heldTold_ = true;
}

void GuardStateRules::checkExposure(Violations& violations) {
  if (run_.mac.comingLock) lock_ = run_.mac.comingLock;
  const Microseconds now = run_.mac.now;
  const bool isExposed = isOwed() && isUnlocked();
  const Microseconds covered = std::max(bareSince_.value_or(0), coveredUntil());
  const bool isBare = isExposed && !misled_ && !isCovered();
  if (lastsTooLong(isBare, bareSince_, now, covered) && !std::exchange(bareTold_, true)) {
    violations.push_back("I22: the Mac is unlocked and a screen has no cover");
  }
  const Microseconds noticed = unwatchedSince_.value_or(0) + unwatchedMax;
  // A lock that is asked for by then may have no answer.
  const Microseconds watched = std::max(noticed, lockAnswered_);
  const bool isUnwatched = isExposed && !isWatched();
  if (lastsTooLong(isUnwatched, unwatchedSince_, now, watched) &&
      !std::exchange(unwatchedTold_, true)) {
    violations.push_back("I22: the Mac is unlocked and nobody watches for the user");
  }
}

void GuardStateRules::beforeTimePasses(Violations& violations) {
  noteLock();
  checkHeldInput(violations);
  checkExposure(violations);
}

void GuardStateRules::atEnd(Violations& violations) {
  checkExposure(violations);
  if (!isOwed() || !isUnlocked()) return;
  // A guard that is killed may have asked for nothing, or just now; one that ends by itself has.
  if (run_.client.diedBySignal == SIGKILL) return;
  if (!run_.client.exited && !lockAsked_) return;
  violations.push_back("I22: the guard goes before the login window shows");
}

}  // namespace simulator
