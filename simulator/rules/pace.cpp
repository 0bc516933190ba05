#include "simulator/rules/pace.h"

#include <algorithm>
#include <array>

#include "simulator/input/posted_event.h"
#include "simulator/input/records.h"
#include "simulator/mac/arguments.h"

namespace simulator {

using platform::Call;
using platform::EventImage;
using platform::Function;
using quartz::EventType;

namespace {

constexpr std::uint32_t waitBeforePicture = 200'000;
constexpr std::int64_t pressEventNumber = 3;

/// Every wait that any command makes, in microseconds.
constexpr std::array<std::uint32_t, 11> knownWaits = {1'000,   waitAfterPost, 15'000,  40'000,
                                                      50'000,  80'000,        100'000, 150'000,
                                                      200'000, 300'000,       500'000};

std::int64_t numberOf(const EventImage& event) {
  return fieldOf(event, quartz::Field::mouseEventNumber);
}

/// A scroll or a move by itself, no part of a click.
bool isMotion(const EventImage& event) {
  const EventType type = typeOf(event);
  return type == EventType::scrollWheel ||
         (type == EventType::mouseMoved && numberOf(event) == pressEventNumber);
}

}  // namespace

std::vector<std::uint32_t> waitsAfter(const EventImage& event) {
  if (isKeyEvent(event) || isMotion(event)) return {waitAfterPost};
  if (typeOf(event) == EventType::mouseMoved) return {waitAfterPost, 15'000};
  if (isPress(event)) return {waitAfterPost, 1'000};
  if (numberOf(event) != pressEventNumber) return {waitAfterPost, 100'000};
  return {waitAfterPost};
}

void PaceRules::before(const ObservedCall& seen, Violations& violations) {
  const Call& call = seen.call;
  // A guard or a service has flows that wait for other reasons; the one that posts is held to it.
  if (isPost(call.function) || call.function == Function::postRecord) {
    // What the flow that works still owes is not waited for by the one that ends the run.
    if (run_.client.told && seen.flow != postingFlow_) run_.owedWaits.clear();
    postingFlow_ = seen.flow;
  }
  if (seen.flow != postingFlow_) return;
  const bool isSleep = call.function == Function::sleep;
  const auto slept = isSleep ? Arguments(call).get<std::uint32_t>(0) : 0;
  checkOwed(call, slept, violations);
  lastWasPrivatePost_ = call.function == Function::privatePost;
  if (!isSleep) {
    if (run_.latestIdentity) checkPauseBefore(call, violations);
    return;
  }
  run_.lastSleep = slept;
  if (std::find(knownWaits.begin(), knownWaits.end(), slept) == knownWaits.end()) {
    violations.push_back("I5: a wait of " + std::to_string(slept) + " us is never due");
  }
}

/// Pays what is owed, or finds it missing. Only the second route of one operation comes in between:
/// it follows the first at once.
void PaceRules::checkOwed(const Call& call, std::uint32_t slept, Violations& violations) {
  auto& owed = run_.owedWaits;
  if (owed.empty()) return;
  const bool isSecondRoute = lastWasPrivatePost_ && call.function == Function::publicPost &&
                             run_.latestEvent.identity == run_.latestIdentity;
  if (call.function == Function::sleep && slept == owed.front()) {
    owed.erase(owed.begin());
  } else if (!isSecondRoute) {
    violations.push_back("I5: a wait of " + std::to_string(owed.front()) + " us is missing");
    owed.clear();
  }
}

/// Taking focus back is not for this rule to judge where keys have their own, and where the run is
/// being ended: focus then goes back at once.
bool PaceRules::mayHurryFocusBack() const {
  return run_.livenessFailed || run_.pressesKeys() || run_.interrupted;
}

/// After input a picture is taken only 200 ms later, and focus is taken back only 100 ms after a
/// click and 50 ms after a scroll or move.
void PaceRules::checkPauseBefore(const Call& call, Violations& violations) const {
  if (call.function == Function::shareContent && run_.lastSleep != waitBeforePicture) {
    violations.push_back("I5: a picture without the wait before it");
  }
  if (call.function != Function::postRecord || mayHurryFocusBack()) return;
  const bool taken = recordKind(Arguments(call).text(2)) == RecordKind::takesFocus;
  const std::uint32_t due = isMotion(run_.latestEvent) ? waitAfterMotion : waitAfterClick;
  if (taken && run_.lastSleep != due) {
    violations.push_back("I5: focus is taken back without the wait before it");
  }
}

/// What else a command would still have waited for is due only when it is not cut short.
void PaceRules::atEnd(Violations& violations) {
  if (!run_.client.exited || run_.owedWaits.empty()) return;
  const std::uint32_t owed = run_.owedWaits.front();
  const bool belongsToIt = owed == waitAfterPost || owed == waitAfterFocusRecord;
  if (run_.interrupted && !belongsToIt) return;
  violations.push_back("I5: ended without the wait after a post or record");
}

}  // namespace simulator
