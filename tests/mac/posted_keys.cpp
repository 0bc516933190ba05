// Posts key events to an application of our own in the background, by either route, with focus and
// key records before and without, and with texts of several lengths.
#include <CoreGraphics/CoreGraphics.h>

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "support/answer.h"
#include "support/receiver.h"
#include "support/records.h"
#include "support/system.h"

namespace {

using probe::Evidence;
using probe::Receiver;
using probe::Verdict;
using probe::verdictOf;

constexpr int quietMilliseconds = 400;
constexpr CGKeyCode keyOfA = 0;

void postKey(pid_t pid, std::size_t units, bool privately) {
  const std::vector<UniChar> text(units, u'x');
  for (const bool down : {true, false}) {
    CGEventRef event = CGEventCreateKeyboardEvent(nullptr, keyOfA, down);
    CGEventSetFlags(event, 0);
    CGEventKeyboardSetUnicodeString(event, text.size(), text.data());
    privately ? probe::privateFunctions().postToPid(pid, event) : CGEventPostToPid(pid, event);
    CFRelease(event);
    constexpr int pauseMilliseconds = 13;
    probe::sleepMilliseconds(pauseMilliseconds);
  }
}

/// The lines of key events, of type 10 and 11, after a key with such a text.
std::vector<std::string> linesOf(Receiver& receiver, std::size_t units, bool privately) {
  receiver.linesUntilQuiet(quietMilliseconds);
  postKey(receiver.pid(), units, privately);
  std::vector<std::string> lines;
  for (const std::string& line : receiver.linesUntilQuiet(quietMilliseconds))
    if (line.rfind("key ", 0) == 0) lines.push_back(line);
  return lines;
}

/// How many units arrive of the press; -1 when none does.
long long unitsArrived(Receiver& receiver, std::size_t units) {
  for (const std::string& line : linesOf(receiver, units, false)) {
    unsigned window = 0;
    unsigned code = 0;
    long long length = 0;
    if (std::sscanf(line.c_str(), "key 10 %u %u %lld", &window, &code, &length) == 3) return length;
  }
  return -1;
}

void makeKeyWindow(Receiver& receiver) {
  probe::giveFocus(receiver.pid(), receiver.window(1));
  probe::makeKey(receiver.pid(), receiver.window(1));
}

void giveBack(Receiver& receiver) {
  probe::post(receiver.pid(), probe::focusRecord(receiver.window(1), false));
}

int typedUnits(const std::string& assumption, Receiver& receiver) {
  constexpr long long unitsMax = 20;
  makeKeyWindow(receiver);
  const long long fitting = unitsArrived(receiver, unitsMax);
  const long long longer = unitsArrived(receiver, 2 * unitsMax);
  giveBack(receiver);
  const Verdict verdict = fitting < 0 ? Verdict::notShown : verdictOf(fitting == unitsMax);
  return probe::answer(assumption, verdict,
                       Evidence().add("of 20 arrive", fitting).add("of 40 arrive", longer));
}

int routes(const std::string& assumption, Receiver& receiver) {
  makeKeyWindow(receiver);
  const auto publicly = linesOf(receiver, 1, false);
  const auto privately = linesOf(receiver, 1, true);
  giveBack(receiver);
  const Verdict verdict =
      publicly.empty() ? Verdict::notShown : verdictOf(privately.empty() && publicly.size() == 2);
  return probe::answer(assumption, verdict,
                       Evidence()
                           .addJson("public route", probe::jsonList(publicly))
                           .addJson("private route", probe::jsonList(privately)));
}

/// Whether a line of a key names a window that is key: only then does a view get it.
bool isTaken(const std::vector<std::string>& lines) {
  return std::any_of(lines.begin(), lines.end(), [](const std::string& line) {
    unsigned window = 0;
    unsigned code = 0;
    unsigned key = 0;
    long long length = 0;
    unsigned long flags = 0;
    long long tag = 0;
    return std::sscanf(line.c_str(), "key 10 %u %u %lld %lu %lld %u", &window, &code, &length,
                       &flags, &tag, &key) == 6 &&
           key != 0;
  });
}

int afterRecords(const std::string& assumption, Receiver& receiver) {
  const auto plain = linesOf(receiver, 1, false);
  probe::giveFocus(receiver.pid(), receiver.window(1));
  const auto focused = linesOf(receiver, 1, false);
  probe::makeKey(receiver.pid(), receiver.window(1));
  const auto key = linesOf(receiver, 1, false);
  giveBack(receiver);
  return probe::answer(assumption, verdictOf(!isTaken(plain) && isTaken(key)),
                       Evidence()
                           .addJson("in the background", probe::jsonList(plain))
                           .addJson("with focus", probe::jsonList(focused))
                           .addJson("with focus and key records", probe::jsonList(key)));
}

}  // namespace

int main(int count, char** words) {
  const std::string assumption = probe::asked(count, words);
  if (!probe::privateFunctions().isComplete())
    return probe::notShown(assumption, "a private function is missing");
  if (!AXIsProcessTrusted()) return probe::notShown(assumption, "Accessibility is not granted");
  Receiver receiver;
  if (!receiver.isReady()) return probe::notShown(assumption, "the receiver has not started");
  if (assumption == "typed-units") return typedUnits(assumption, receiver);
  if (assumption == "keys-by-public-route") return routes(assumption, receiver);
  if (assumption == "keys-after-records") return afterRecords(assumption, receiver);
  return probe::notShown(assumption, "it is not asked here");
}
