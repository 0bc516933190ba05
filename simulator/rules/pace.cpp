#include "simulator/rules/pace.h"

#include <algorithm>
#include <array>

#include "simulator/input/posted_pointer.h"
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
constexpr std::array<std::uint32_t, 11> knownWaits = {
    1'000, 12'000, 15'000, 40'000, 50'000, 80'000, 100'000, 150'000, 200'000, 300'000, 500'000};

std::int64_t numberOf(const EventImage& event) {
  return fieldOf(event, quartz::Field::mouseEventNumber);
}

/// A scroll or a move by itself, no part of a click.
bool isMotion(const EventImage& event) {
  const auto type = static_cast<EventType>(event.type);
  return type == EventType::scrollWheel ||
         (type == EventType::mouseMoved && numberOf(event) == pressEventNumber);
}

}  // namespace

std::vector<std::uint32_t> waitsAfter(const EventImage& event) {
  if (isMotion(event)) return {waitAfterPost};
  if (static_cast<EventType>(event.type) == EventType::mouseMoved) return {waitAfterPost, 15'000};
  if (isPress(event)) return {waitAfterPost, 1'000};
  if (numberOf(event) != pressEventNumber) return {waitAfterPost, 100'000};
  return {waitAfterPost};
}

void PaceRules::before(const Call& call, const PostedSoFar& posted, Violations& violations) {
  const bool isSleep = call.function == Function::sleep;
  const auto length = isSleep ? Arguments(call).get<std::uint32_t>(0) : 0;
  const bool secondRoute =
      lastWasPrivatePost_ && call.function == Function::publicPost && posted.again;
  if (!owed_.empty() && isSleep && length == owed_.front()) {
    owed_.erase(owed_.begin());
  } else if (!owed_.empty() && !secondRoute) {
    violations.push_back("I5: a wait of " + std::to_string(owed_.front()) + " us is missing");
    owed_.clear();
  }
  lastWasPrivatePost_ = call.function == Function::privatePost;
  if (!isSleep) {
    if (posted.latest != nullptr) checkPauseBefore(call, posted, violations);
    return;
  }
  lastSleep_ = length;
  if (std::find(knownWaits.begin(), knownWaits.end(), length) == knownWaits.end()) {
    violations.push_back("I5: a wait of " + std::to_string(length) + " us is never due");
  }
}

/// After input a picture is taken only 200 ms later, and focus is taken back only 100 ms after a
/// click and 50 ms after a scroll or move.
void PaceRules::checkPauseBefore(const Call& call, const PostedSoFar& posted,
                                 Violations& violations) const {
  if (call.function == Function::shareContent && lastSleep_ != waitBeforePicture) {
    violations.push_back("I5: a picture without the wait before it");
  }
  if (call.function != Function::postRecord || posted.mayHurryFocusBack) return;
  const bool taken = recordKind(Arguments(call).text(2)) == RecordKind::takesFocus;
  if (taken && lastSleep_ != (isMotion(*posted.latest) ? waitAfterMotion : waitAfterClick)) {
    violations.push_back("I5: focus is taken back without the wait before it");
  }
}

/// What else a command would still have waited for is due only when it is not cut short.
void PaceRules::finish(bool isInterrupted, Violations& violations) const {
  if (owed_.empty()) return;
  const std::uint32_t owed = owed_.front();
  const bool belongsToIt = owed == waitAfterPost || owed == waitAfterFocusRecord;
  if (isInterrupted && !belongsToIt) return;
  violations.push_back("I5: ended without the wait after a post or record");
}

}  // namespace simulator
