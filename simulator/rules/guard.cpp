#include "simulator/rules/guard.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "base/numbers.h"
#include "simulator/mac/arguments.h"
#include "simulator/rules/tap_events.h"

namespace simulator {

using platform::Call;
using platform::Function;
using platform::ItemKind;
using platform::WireItem;

namespace {

constexpr Microseconds firstSecond = 1'000'000;

/// After which the system lets an event go on that a tap has not answered for.
constexpr Microseconds tapPatience = 1'000'000;

}  // namespace

/// 0 when there is no grace.
double GuardRules::graceSeconds() const {
  const auto variable = run_.client.environment.find("ZENTROVE_COVER_GRACE");
  if (variable == run_.client.environment.end()) return 0;
  const double seconds = driver::parseDouble(variable->second).value_or(0);
  return std::isfinite(seconds) && seconds > 0 ? seconds : 0;
}

bool GuardRules::hasGraceLeft() const {
  if (!tapStarted_) return false;
  return static_cast<double>(run_.mac.now - *tapStarted_) / microsecondsPerSecond < graceSeconds();
}

void GuardRules::takeItem(const WireItem& item) {
  if (item.kind != ItemKind::tapEvent) return;
  if (isNotice(item.event)) {
    reenableOwed_ = true;
  } else {
    event_ = item.event;
    hasReturned_ = hasReturned_ || (isUsers(item.event) && endings_ == 0);
    lockAsked_ = false;
    waited_ = 0;
  }
}

/// P14: before the lock, or before the flow that stands by to lock is told to, nothing is asked but
/// the clocks.
void GuardRules::checkCallback(const Call& call, Violations& violations) {
  const bool isClock = call.function == Function::uptime || call.function == Function::calendar;
  const bool isAllowed = call.function == Function::tapVerdict || (isClock && graceSeconds() > 0);
  // Grace that ended the guard may run out while its line is written.
  if (isAllowed || lockAsked_ || locksBegun_ > 0 || !canLock_ || graceTaken_) return;
  const bool asksForLock =
      call.function == Function::lockScreen || call.function == Function::signalSemaphore;
  if (!isUsers(*event_)) {
    violations.push_back("I17: own input, or none to speak of, makes the guard do something");
  } else if (!hasGraceLeft() && !asksForLock) {
    violations.push_back("P14: the guard calls something before it locks");
  }
  lockAsked_ = asksForLock;
}

/// What the system takes its time for is not the guard's to choose.
void GuardRules::noteWait(const Call& call) {
  const bool isOwn = latestCall_ == Function::sleep || latestCall_ == Function::waitForSemaphore;
  if (isOwn) waited_ += run_.mac.now - latestSince_;
  latestCall_ = call.function;
  latestSince_ = run_.mac.now;
}

void GuardRules::checkVerdict(const Call& call, Violations& violations) {
  if (!event_) return;
  const bool passes = Arguments(call).get<bool>(2);
  if (passes == isUsers(*event_)) {
    violations.push_back(passes ? "I17: the user's input passes the guard"
                                : "I17: input that is not the user's is swallowed");
  }
  const bool owesLock = isUsers(*event_) && !hasGraceLeft() && !graceTaken_ && canLock_;
  if (owesLock && locksBegun_ == 0) {
    violations.push_back("I16: the user is back and the screen is not locked");
  }
  if (waited_ >= tapPatience) {
    violations.push_back("I17: the guard waits until the user's input has gone past its tap");
  }
  event_.reset();
}

/// The main flow has its tap to serve. Another program may take as long as it likes.
void GuardRules::checkMainFlow(const Call& call, Violations& violations) {
  noteWait(call);
  if (watches_ && call.function == Function::toolOutput) {
    violations.push_back("P14: the guard runs another program while it watches");
  }
  if (event_) checkCallback(call, violations);
}

void GuardRules::before(const ObservedCall& seen, Violations& violations) {
  if (!isGuard()) return;
  const Call& call = seen.call;
  if (watches_ && call.function == Function::findSymbol) {
    violations.push_back("P14: the guard looks an entry up while it watches");
  }
  if (seen.flow == 0) checkMainFlow(call, violations);
  if (call.function == Function::lockScreen) ++locksBegun_;
  if (call.function == Function::writeOutput) {
    writing_.insert(seen.flow);
    checkLine(Arguments(call).text(0), violations);
  }
  const bool leavesUnlocked = locksBegun_ == 0 && canLock_ && !graceTaken_;
  if (call.function == Function::exit && watches_ && leavesUnlocked) {
    violations.push_back("I16: the guard ends without having locked the screen");
  }
  if (seen.flow != 0) return;
  if (call.function == Function::tapVerdict) checkVerdict(call, violations);
  if (call.function == Function::nextItem && reenableOwed_) {
    violations.push_back("I17: a disabled tap is not enabled again");
    reenableOwed_ = false;
  }
}

void GuardRules::checkEndingLine(const std::string& by, Violations& violations) {
  const bool isUsers = by == "user" || by == "grace";
  ++endings_;
  usersEndings_ += isUsers ? 1 : 0;
  // Whoever returned first may still wait for the lock while another reason is written.
  const bool isLate = isUsers && endings_ > 1 && !hasReturned_;
  if (endings_ - usersEndings_ > 1 || usersEndings_ > 1 || isLate) {
    violations.push_back("I16: the guard says more than once why it ends");
  }
}

void GuardRules::checkLine(const std::string& line, Violations& violations) {
  const auto reply = nlohmann::json::parse(line, nullptr, false);
  if (!reply.is_object()) return;  // another rule's
  if (reply.contains("covers")) watches_ = true;
  if (!reply.contains("by")) return;
  const std::string by = reply.value("by", "");
  checkEndingLine(by, violations);
  if (by == "grace") {
    graceTaken_ = locksBegun_ == 0 && hasGraceLeft() && run_.mac.now - *tapStarted_ >= firstSecond;
    if (!graceTaken_) violations.push_back("I16: grace when there is none");
    return;
  }
  if (!tellsOfLock(reply.value("relocked", false))) {
    violations.push_back("I16: \"relocked\" is not what the lock before it gave");
  }
}

/// A line tells of a call of the lock that has come back, and of which no line before it has told:
/// another flow may have begun a further one, or two may come back at once. Where none has come
/// back, the screen is not locked yet.
bool GuardRules::tellsOfLock(bool relocked) {
  bool isBack = false;
  for (std::size_t i = locksReported_; i < locks_.size() && locks_[i].due <= run_.mac.now; ++i) {
    isBack = true;
    if ((locks_[i].status == 0) != relocked) continue;
    locksReported_ = i + 1;
    return true;
  }
  return !isBack && !relocked;
}

void GuardRules::after(const ObservedCall& seen, const Answer& answer, Violations& /*violations*/) {
  if (!isGuard()) return;
  const Call& call = seen.call;
  if (call.function == Function::writeOutput) writing_.erase(seen.flow);
  if (call.function == Function::readAvailable) {
    inputEnded_ = driver::unpack<std::string>(answer.value).empty();
  }
  if (call.function == Function::findSymbol &&
      Arguments(call).text(1) == "SACLockScreenImmediate") {
    canLock_ = driver::unpack<bool>(answer.value);
  }
  if (call.function == Function::lockScreen) {
    locks_.push_back({run_.mac.now + answer.delay, driver::unpack<std::int32_t>(answer.value)});
  }
  if (seen.flow != 0) return;
  if (call.function == Function::nextItem) takeItem(driver::unpack<WireItem>(answer.value));
  if (call.function == Function::enableTap) {
    reenableOwed_ = false;
    if (!tapStarted_) tapStarted_ = run_.mac.now;
  }
  // Grace begins once the system has said that the tap works, for which it may take its time.
  if (call.function == Function::tapIsEnabled && !watches_) {
    tapStarted_ = run_.mac.now + answer.delay;
  }
}

void GuardRules::atEnd(Violations& violations) {
  if (!isGuard() || !watches_) return;
  const int signal = run_.client.diedBySignal.value_or(0);
  if (signal == 1 || signal == 2 || signal == 15) {
    violations.push_back("I16: a signal ends the guard before the screen is locked");
  }
  if (!run_.client.exited && !run_.client.diedBySignal && !writing_.empty()) {
    violations.push_back("I16: the guard waits for its reader, and does not end");
  }
  if (inputEnded_ && locksBegun_ == 0 && canLock_ && !graceTaken_ && !run_.client.diedBySignal) {
    violations.push_back("I16: the guard's agent has gone, and the screen is not locked");
  }
}

}  // namespace simulator
