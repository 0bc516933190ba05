// Listens at the session while events are posted to one process and into the session: which of them
// pass, and whether their tags do. The key that is posted into the session is F20, which does
// nothing.
#include <algorithm>
#include <string>
#include <vector>

#include "support/answer.h"
#include "support/posting.h"
#include "support/receiver.h"
#include "support/records.h"
#include "support/system.h"
#include "support/taps.h"

namespace {

using probe::Evidence;
using probe::Receiver;
using probe::SeenEvent;
using probe::Verdict;

constexpr double waitSeconds = 0.7;
constexpr std::int64_t tag = 0x6D616373;
constexpr CGEventMask mask =
    probe::keyMask | CGEventMaskBit(kCGEventLeftMouseDown) | CGEventMaskBit(kCGEventLeftMouseUp);

/// The tagged key passes, and nothing else was told meanwhile that is not a key of its own.
long long tagged(const std::vector<SeenEvent>& events) {
  return std::count_if(events.begin(), events.end(),
                       [](const SeenEvent& each) { return each.tag == tag; });
}

long long presses(const std::vector<SeenEvent>& events) {
  return std::count_if(events.begin(), events.end(), [](const SeenEvent& each) {
    return each.type == kCGEventLeftMouseDown || each.type == kCGEventLeftMouseUp;
  });
}

void postKeyTo(pid_t pid, bool privately) {
  for (const bool down : {true, false}) {
    CGEventRef event = CGEventCreateKeyboardEvent(nullptr, probe::idleKey, down);
    CGEventSetFlags(event, 0);
    CGEventSetIntegerValueField(event, kCGEventSourceUserData, tag);
    privately ? probe::privateFunctions().postToPid(pid, event) : CGEventPostToPid(pid, event);
    CFRelease(event);
  }
}

int answerFor(const std::string& assumption, probe::Tap& tap, Receiver& receiver) {
  probe::postIdleKey(tag);
  const long long control = tagged(tap.eventsWithin(waitSeconds));
  if (control == 0) return probe::notShown(assumption, "the tap was not told of the session's key");
  Evidence evidence;
  evidence.add("keys into the session that the tap was told of", control);
  if (assumption == "tags-pass-taps")
    return probe::answer(assumption, probe::verdictOf(control == 2), evidence);
  if (assumption != "posted-past-taps") return probe::notShown(assumption, "it is not asked here");
  if (!receiver.isReady()) return probe::notShown(assumption, "the receiver has not started");
  postKeyTo(receiver.pid(), false);
  const long long publicly = tagged(tap.eventsWithin(waitSeconds));
  postKeyTo(receiver.pid(), true);
  const long long privately = tagged(tap.eventsWithin(waitSeconds));
  probe::makeKey(receiver.pid(), receiver.window(1));
  const long long records = presses(tap.eventsWithin(waitSeconds));
  evidence.add("keys to one process, public route", publicly)
      .add("keys to one process, private route", privately)
      .add("presses by records", records);
  return probe::answer(assumption,
                       probe::verdictOf(publicly == 0 && privately == 0 && records == 0), evidence);
}

}  // namespace

int main(int count, char** words) {
  const std::string assumption = probe::asked(count, words);
  CGMainDisplayID();
  if (!probe::privateFunctions().isComplete())
    return probe::notShown(assumption, "a private function is missing");
  Receiver receiver;
  probe::Tap tap(kCGEventTapOptionListenOnly, mask);
  if (!tap.isMade()) return probe::notShown(assumption, "no tap was made: a permission is missing");
  return answerFor(assumption, tap, receiver);
}
