#include "simulator/rules/posting.h"

#include "simulator/input/posted_event.h"
#include "simulator/mac/arguments.h"
#include "simulator/rules/pace.h"

namespace simulator {

using platform::EventImage;
using platform::Function;
using quartz::EventType;

namespace {

constexpr std::uint32_t waitBetweenClicks = 80'000;

bool isUp(std::uint32_t type) {
  return type == static_cast<std::uint32_t>(EventType::leftMouseUp) ||
         type == static_cast<std::uint32_t>(EventType::rightMouseUp);
}

}  // namespace

void PostingRules::before(const ObservedCall& seen, Violations& violations) {
  if (seen.call.function == Function::axPerform) checkPress(violations);
  if (!isPost(seen.call.function)) return;
  const auto pid = Arguments(seen.call).get<Pid>(0);
  const EventImage& event = run_.latestEvent;
  run_.owedWaits = waitsAfter(event);
  if (fieldOf(event, quartz::Field::sourceUserData) != ownEventTag) {
    violations.push_back("I3: an event without the own tag");
  }
  // The modifiers of a key are checked with its command.
  const bool isTold = isKeyEvent(event) && run_.pressesKeys();
  if (event.flags != 0 && !isTold) {
    violations.push_back("I3: an event with the user's modifiers");
  }
  if (postedTo_ && *postedTo_ != pid) violations.push_back("I3: events to two processes");
  postedTo_ = pid;
  if (run_.latestIdentity == event.identity) return;  // the second route of one operation
  run_.latestIdentity = event.identity;
  checkOperation(event, violations);
}

/// One post operation, whichever routes it takes.
void PostingRules::checkOperation(const EventImage& event, Violations& violations) {
  checkPermission(violations);
  const bool secondClick = isPress(event) && fieldOf(event, quartz::Field::clickState) == 2;
  if (secondClick && run_.lastSleep != waitBetweenClicks && !run_.creationFailed) {
    violations.push_back("I5: a second click without the wait before it");
  }
  if (isPress(event)) ++pressed_[event.type];
  if (isUp(event.type)) --pressed_[event.type - 1];
}

/// A lock, a death or a signal may fall between a run's check and its post: one operation is let
/// pass, for which no run could be quick enough.
void PostingRules::checkPermission(Violations& violations) {
  const World& world = run_.mac.world;
  // Of other runs I24 says more.
  if (run_.interrupted && run_.isService() && ++operationsAfterInterruption_ > 1) {
    violations.push_back("I2: two operations after the service had to end");
  }
  if (run_.sessionUnusable)
    violations.push_back("I1: posted after a check found no usable session");
  // What cannot be read is taken for usable: no check could find more.
  const bool usable = !world.session.readable || world.session.isUsable();
  if (!usable && ++operationsWhileUnusable_ > 1) {
    violations.push_back("I1: two operations without a session check between them");
  }
  if (run_.livenessFailed) violations.push_back("I2: posted after the liveness check failed");
  const std::optional<Pid> service = servicePid(run_.client);
  if (service && world.processes.count(*service) == 0 && ++operationsAfterDeath_ > 1) {
    violations.push_back("I2: two operations after the service's death");
  }
}

/// What is pressed between events, or in their place, is input as they are. Of a service that dies
/// while the application is asked what to press, a run need not know.
void PostingRules::checkPress(Violations& violations) const {
  const bool isInput = run_.latestIdentity || run_.pressesKeys();
  const std::optional<Pid> service = servicePid(run_.client);
  if (isInput && hasSlept_ && service && run_.mac.world.processes.count(*service) == 0) {
    violations.push_back("I2: pressed after the service's death");
  }
}

void PostingRules::after(const ObservedCall& seen, const Answer& /*answer*/,
                         Violations& /*violations*/) {
  if (seen.call.function == Function::sleep) hasSlept_ = true;
  if (seen.call.function == Function::nullSignal) hasSlept_ = false;
  if (seen.call.function == Function::session) operationsWhileUnusable_ = 0;
  if (run_.endsRequest(seen.call)) postedTo_.reset();
}

/// I4. Who is stopped in mid-click cannot let the button go: whatever stopped it forbids the
/// release too.
void PostingRules::atEnd(Violations& violations) {
  if (!run_.client.exited) return;
  if (run_.everUnusable || run_.livenessFailed || run_.creationFailed) return;
  if (run_.interrupted && run_.isService()) return;
  for (const auto& [type, count] : pressed_) {
    if (count != 0) violations.push_back("I4: a button was left in the wrong state");
  }
}

}  // namespace simulator
