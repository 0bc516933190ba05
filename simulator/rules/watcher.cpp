#include "simulator/rules/watcher.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <utility>

#include "base/geometry.h"
#include "simulator/mac/arguments.h"
#include "simulator/rules/tap_events.h"
#include "simulator/world/keyboard_layouts.h"
#include "simulator/world/windows.h"

namespace simulator {

using platform::Function;
using quartz::EventType;

namespace {

constexpr double throttleSeconds = 0.25;
constexpr std::int64_t keypadEnter = 76;

/// A watcher looks after its tap once a second, and has a moment for a notice that is on its way.
constexpr Microseconds deafMax = 2'500'000;

constexpr std::uint64_t usersInput =
    tap::maskOf(EventType::leftMouseDown) | tap::maskOf(EventType::rightMouseDown) |
    tap::maskOf(EventType::otherMouseDown) | tap::maskOf(EventType::leftMouseDragged) |
    tap::maskOf(EventType::rightMouseDragged) | tap::maskOf(EventType::mouseMoved) |
    tap::maskOf(EventType::scrollWheel) | tap::maskOf(EventType::keyDown) |
    tap::maskOf(EventType::flagsChanged);

bool isOf(const tap::Event& event, EventType type) {
  return event.type == static_cast<std::uint32_t>(type);
}

bool isOfKeys(const tap::Event& event) {
  return isOf(event, EventType::keyDown) || isOf(event, EventType::flagsChanged);
}

bool submits(const tap::Event& event) {
  const bool isReturn = event.keyCode == key_codes::returnKey || event.keyCode == keypadEnter;
  return isOf(event, EventType::keyDown) && isReturn && (event.flags & shiftFlag) == 0;
}

std::string kindOf(const tap::Event& event) {
  if (isOfKeys(event)) return "key";
  return isOf(event, EventType::scrollWheel) ? "scroll" : "pointer";
}

}  // namespace

/// One that is only told, of all that a user does.
bool WatcherRules::hasWholeTap() const {
  const auto& taps = run_.mac.tapLine.taps;
  return std::any_of(taps.begin(), taps.end(), [&](const Tap& tap) {
    return tap.owner == run_.client.pid && !tap.filters && (tap.mask & usersInput) == usersInput;
  });
}

bool WatcherRules::isHearing() const {
  const auto& taps = run_.mac.tapLine.taps;
  return std::any_of(taps.begin(), taps.end(), [&](const Tap& tap) {
    return tap.owner == run_.client.pid && tap.enabled && tap.isValid && !tap.isDead;
  });
}

bool WatcherRules::touchesTarget(const tap::Event& event) const {
  if (!target_ || isMovement(event)) return false;
  if (event.targetProcess == *target_) return true;
  const World& world = run_.mac.world;
  if (isOfKeys(event)) return world.frontmost == *target_;
  const auto isThere = [&](const auto& each) {
    return driver::contains(each.frame, event.location);
  };
  if (std::any_of(world.covers.begin(), world.covers.end(), isThere)) return false;
  const auto window =
      std::find_if(world.windows.begin(), world.windows.end(),
                   [&](const Window& each) { return each.onScreen && isThere(each); });
  return window != world.windows.end() && window->owner == *target_;
}

std::optional<std::string> WatcherRules::inFront() const {
  const Application* front = findApplication(run_.mac.world, run_.mac.world.frontmost);
  return front == nullptr ? std::nullopt : front->bundleIdentifier;
}

/// Whether the input touches the target; none when the watcher may have been told otherwise.
std::optional<bool> WatcherRules::touches() const {
  const bool isTouching = touchesTarget(input_->event);
  const bool isUntold = input_->isBlurred || (isBlind_ && isOfKeys(input_->event));
  if (isUntold && target_) return std::nullopt;
  return isTouching == input_->touchedTarget ? std::optional(isTouching) : std::nullopt;
}

/// Whether the input must be reported, or must not; none when it cannot be known.
std::optional<bool> WatcherRules::isDue() const {
  if (!isUsers(input_->event)) return false;
  if (submits(input_->event)) return true;
  const double passed = input_->time.value_or(0) - lastReport_;
  if (!input_->time || passed > throttleSeconds || passed < 0) return true;
  return touches();
}

void WatcherRules::checkItemTaken(Violations& violations) {
  if (input_ && isDue().value_or(false)) {
    violations.push_back("I26: what the user did is not reported");
  }
  input_.reset();
  if (std::exchange(enablingOwed_, false)) {
    violations.push_back("I26: a disabled tap is not enabled again");
  }
  if (run_.outputRefused) violations.push_back("I26: the watcher goes on, and nobody reads it");
}

void WatcherRules::checkLine(const std::string& text, Violations& violations) {
  const auto line = nlohmann::json::parse(text, nullptr, false);
  if (!line.is_object()) return;  // another rule's
  if (line.value("watching", false)) {
    began_ = true;
    if (line.contains("targetPid")) target_ = line.value("targetPid", Pid{0});
    if (!hasWholeTap()) violations.push_back("I26: the watcher's tap hears not all of the user");
  }
  if (!line.contains("input")) return;
  if (!input_ || !isDue().value_or(true)) {
    violations.push_back("I26: a report of what the user has not done, or too soon");
  } else {
    checkReport(line, violations);
    lastReport_ = input_->time.value_or(0);
  }
  input_.reset();
}

void WatcherRules::checkReport(const nlohmann::json& report, Violations& violations) const {
  const auto milliseconds = static_cast<std::int64_t>(input_->time.value_or(0) * 1000);
  if (report.value("input", "") != kindOf(input_->event) ||
      report.value("at", std::int64_t{-1}) != milliseconds) {
    violations.push_back("I26: a report tells another kind or time than the input had");
  }
  const std::optional<bool> isTouching = touches();
  const bool tellsTouch = report.contains("touchesTarget");
  if (tellsTouch != target_.has_value() ||
      (target_ && isTouching && report.value("touchesTarget", false) != *isTouching)) {
    violations.push_back("I26: a report errs about the target");
  }
  const auto submitted = submits(input_->event) ? input_->submitted : std::nullopt;
  const bool mayErr = input_->isBlurred || inFront() != input_->submitted;
  const bool tellsSubmission = report.contains("submit");
  const bool isRight = submitted ? report.value("submit", "") == *submitted : !tellsSubmission;
  if (!isRight && (!mayErr || !submits(input_->event))) {
    violations.push_back("I26: a report errs about what was submitted");
  }
}

void WatcherRules::before(const ObservedCall& seen, Violations& violations) {
  if (!isWatcher() || seen.flow != 0) return;
  if (seen.call.function == Function::nextItem) checkItemTaken(violations);
  isResting_ = seen.call.function == Function::nextItem;
  if (seen.call.function == Function::writeOutput) {
    checkLine(Arguments(seen.call).text(0), violations);
  }
}

void WatcherRules::after(const ObservedCall& seen, const Answer& answer,
                         Violations& /*violations*/) {
  if (!isWatcher() || seen.flow != 0) return;
  if (input_ && seen.faulty) input_->isBlurred = true;
  switch (seen.call.function) {
    case Function::nextItem: {
      const auto item = driver::unpack<platform::WireItem>(answer.value);
      if (item.kind != platform::ItemKind::tapEvent) break;
      enablingOwed_ = isNotice(item.event);
      if (enablingOwed_) break;
      input_.emplace();
      input_->event = item.event;
      input_->touchedTarget = touchesTarget(item.event);
      input_->submitted = inFront();
      break;
    }
    case Function::calendar:
      if (input_) input_->time = driver::unpack<double>(answer.value);
      break;
    case Function::openLibrary:
      isBlind_ = isBlind_ || answer.value.isNothing();
      break;
    case Function::findSymbol:
      isBlind_ = isBlind_ || !driver::unpack<bool>(answer.value);
      break;
    case Function::enableTap:
      enablingOwed_ = false;
      break;
    default:
      break;
  }
}

void WatcherRules::checkHearing(Violations& violations) {
  if (!isWatcher() || !began_ || deafTold_) return;
  const Microseconds now = run_.mac.now;
  if (isHearing() || !isResting_) {
    deafSince_.reset();
  } else if (!deafSince_) {
    deafSince_ = now;
  } else if (now - *deafSince_ > deafMax) {
    violations.push_back("I26: the watcher goes on, and hears nothing");
    deafTold_ = true;
  }
}

void WatcherRules::beforeTimePasses(Violations& violations) { checkHearing(violations); }

void WatcherRules::atEnd(Violations& violations) { checkHearing(violations); }

}  // namespace simulator
