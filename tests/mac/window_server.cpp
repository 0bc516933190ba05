// Reads the session's dictionary, the window list, the processes and the clock of the user's input.
#include <ApplicationServices/ApplicationServices.h>
#include <unistd.h>

#include <cmath>
#include <string>

#include "support/answer.h"
#include "support/receiver.h"
#include "support/system.h"

namespace {

using probe::Evidence;
using probe::Receiver;
using probe::Verdict;
using probe::verdictOf;

int unlockedKey(const std::string& assumption) {
  CFDictionaryRef session = CGSessionCopyCurrentDictionary();
  if (session == nullptr) return probe::notShown(assumption, "there is no session with a screen");
  const void* locked = nullptr;
  const void* console = nullptr;
  const bool hasLocked =
      CFDictionaryGetValueIfPresent(session, CFSTR("CGSSessionScreenIsLocked"), &locked) != 0;
  const bool hasConsole =
      CFDictionaryGetValueIfPresent(session, CFSTR("kCGSSessionOnConsoleKey"), &console) != 0;
  return probe::answer(assumption, verdictOf(!hasLocked),
                       Evidence()
                           .add("CGSSessionScreenIsLocked is there", hasLocked)
                           .add("kCGSSessionOnConsoleKey is there", hasConsole));
}

int windowBounds(const std::string& assumption, Receiver& receiver) {
  const auto bounds = probe::windowBounds(receiver.window(0));
  if (!bounds) return probe::notShown(assumption, "the window is not listed");
  const auto shown = [](double value) { return std::to_string(static_cast<int>(value)); };
  const bool holds = bounds->origin.x == 100 && bounds->size.width == 300 &&
                     bounds->size.height >= 200 && bounds->origin.y > 0;
  return probe::answer(
      assumption, verdictOf(holds),
      Evidence().add("content of 300 by 200 at 100", shown(bounds->size.width) + " by " +
                                                         shown(bounds->size.height) + " at " +
                                                         shown(bounds->origin.x)));
}

/// The receiver shows its second window after its first, so that lies in front.
int windowOrder(const std::string& assumption, Receiver& receiver) {
  const long long first = probe::placeOnScreen(receiver.window(0));
  const long long second = probe::placeOnScreen(receiver.window(1));
  const Verdict verdict = first < 0 || second < 0 ? Verdict::notShown : verdictOf(second < first);
  return probe::answer(assumption, verdict,
                       Evidence()
                           .add("place of the window shown first", first)
                           .add("place of the window shown last", second));
}

int processLookups(const std::string& assumption, Receiver& receiver) {
  const auto& functions = probe::privateFunctions();
  probe::SerialNumber process{};
  pid_t back = 0;
  const int own = functions.processForPid(receiver.pid(), process.data());
  const int found = functions.pidOfProcess(process.data(), &back);
  constexpr pid_t launchd = 1;
  const int none = functions.processForPid(launchd, process.data());
  const pid_t front = probe::frontPid();
  return probe::answer(
      assumption,
      verdictOf(own == 0 && found == 0 && back == receiver.pid() && none != 0 && front != 0),
      Evidence()
          .add("GetProcessForPID of an application", own)
          .add("GetProcessPID of it", found)
          .add("gives it back", back == receiver.pid())
          .add("GetProcessForPID of launchd", none)
          .add("the front process is known", front != 0));
}

int inputClock(const std::string& assumption) {
  constexpr auto tabletProximity = static_cast<CGEventType>(24);
  const double moved =
      CGEventSourceSecondsSinceLastEventType(kCGEventSourceStateHIDSystemState, kCGEventMouseMoved);
  const double never =
      CGEventSourceSecondsSinceLastEventType(kCGEventSourceStateHIDSystemState, tabletProximity);
  return probe::answer(assumption, verdictOf(moved >= 0 && (std::isinf(never) || never > moved)),
                       Evidence()
                           .add("seconds since a move", std::to_string(moved))
                           .add("since an event that never came", std::to_string(never)));
}

}  // namespace

int main(int count, char** words) {
  const std::string assumption = probe::asked(count, words);
  CGMainDisplayID();
  if (assumption == "unlocked-key") return unlockedKey(assumption);
  if (assumption == "input-clock") return inputClock(assumption);
  if (!probe::privateFunctions().isComplete())
    return probe::notShown(assumption, "a private function is missing");
  Receiver receiver;
  if (!receiver.isReady()) return probe::notShown(assumption, "the receiver has not started");
  if (assumption == "window-bounds") return windowBounds(assumption, receiver);
  if (assumption == "window-order") return windowOrder(assumption, receiver);
  if (assumption == "process-lookups") return processLookups(assumption, receiver);
  return probe::notShown(assumption, "it is not asked here");
}
