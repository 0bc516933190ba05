// Asks two applications of our own, whose windows lie at the same place, what is at a point, and at
// one of the menu bar; brings windows in front of others of their application; and hides a button.
#include <ApplicationServices/ApplicationServices.h>

#include <string>

#include "support/accessibility.h"
#include "support/answer.h"
#include "support/receiver.h"
#include "support/system.h"

namespace {

using probe::Evidence;
using probe::Receiver;
using probe::verdictOf;

constexpr int showMilliseconds = 700;
constexpr int minimizeMilliseconds = 2'000;

/// An application whose windows are shown.
struct Desk {
  Receiver& receiver;
  AXUIElementRef application;

  std::uint32_t windowAt(CGPoint point) const {
    AXUIElementRef element = probe::elementAt(application, point);
    return element == nullptr ? 0 : probe::windowOf(element);
  }
  AXUIElementRef window(int index) const {
    for (AXUIElementRef each : probe::listedElements(application, CFSTR("AXWindows")))
      if (probe::windowOf(each) == receiver.window(index)) return each;
    return nullptr;
  }
  /// Whether the one window lies in front of the other.
  bool isInFront(int index, int other) const {
    const long long place = probe::placeOnScreen(receiver.window(index));
    return place >= 0 && place < probe::placeOnScreen(receiver.window(other));
  }
};

/// The other application's windows lie on this one's; then this one's second on its first.
int elementAtPoint(const std::string& assumption, Desk& desk) {
  const auto bounds = probe::windowBounds(desk.receiver.window(0));
  if (!bounds) return probe::notShown(assumption, "the window list has no window of the receiver");
  const CGPoint point{bounds->origin.x + bounds->size.width / 2,
                      bounds->origin.y + bounds->size.height / 2};
  const std::uint32_t alone = desk.windowAt(point);
  Receiver other;
  if (!other.isReady()) return probe::notShown(assumption, "the other receiver has not started");
  probe::sleepMilliseconds(showMilliseconds);
  const bool isCovered =
      probe::placeOnScreen(other.window(0)) >= 0 &&
      probe::placeOnScreen(other.window(0)) < probe::placeOnScreen(desk.receiver.window(0));
  const std::uint32_t covered = desk.windowAt(point);
  desk.receiver.tell("overlap");
  probe::sleepMilliseconds(showMilliseconds);
  const std::uint32_t overlapped = desk.windowAt(point);
  Evidence evidence;
  evidence
      .addJson("numbers of its windows", "[" + std::to_string(desk.receiver.window(0)) + ", " +
                                             std::to_string(desk.receiver.window(1)) + "]")
      .add("window at the point", static_cast<long long>(alone))
      .add("another application's window lies on it", isCovered)
      .add("window at the point then", static_cast<long long>(covered))
      .add("with its own second window on its first", static_cast<long long>(overlapped));
  if (alone != desk.receiver.window(0) || !isCovered)
    return probe::answer(assumption, probe::Verdict::notShown, evidence);
  return probe::answer(
      assumption, verdictOf(covered == alone && overlapped == desk.receiver.window(1)), evidence);
}

/// The window that was shown first lies behind, until it is raised; then the other one comes back
/// from the Dock.
int raise(const std::string& assumption, Desk& desk) {
  const pid_t front = probe::frontPid();
  AXUIElementRef first = desk.window(0);
  AXUIElementRef second = desk.window(1);
  if (first == nullptr || second == nullptr || !desk.isInFront(1, 0))
    return probe::notShown(assumption, "the receiver's windows do not lie as they were shown");
  const AXError raised = AXUIElementPerformAction(first, CFSTR("AXRaise"));
  probe::sleepMilliseconds(showMilliseconds);
  const bool isRaised = desk.isInFront(0, 1);
  AXUIElementSetAttributeValue(second, CFSTR("AXMinimized"), kCFBooleanTrue);
  probe::sleepMilliseconds(minimizeMilliseconds);
  const bool isMinimized = !probe::isOnScreen(desk.receiver.window(1));
  AXUIElementSetAttributeValue(second, CFSTR("AXMinimized"), kCFBooleanFalse);
  probe::sleepMilliseconds(minimizeMilliseconds);
  const bool isBack = desk.isInFront(1, 0);
  const bool frontStays = front == probe::frontPid();
  Evidence evidence;
  evidence.add("AXRaise gives", static_cast<int>(raised))
      .add("the window is raised", isRaised)
      .add("the other one is minimized", isMinimized)
      .add("and comes back in front", isBack)
      .add("the front application stays", frontStays);
  if (!isMinimized) return probe::answer(assumption, probe::Verdict::notShown, evidence);
  return probe::answer(assumption, verdictOf(isRaised && isBack && frontStays), evidence);
}

int hidden(const std::string& assumption, Desk& desk) {
  desk.receiver.tell("button");
  AXUIElementRef window = desk.window(0);
  AXUIElementRef button =
      window == nullptr ? nullptr : probe::elementBelow(window, "AXButton", "Probe");
  const auto middle = button == nullptr ? std::nullopt : probe::middleOf(button);
  if (!middle) return probe::notShown(assumption, "the receiver's button is not found");
  const auto isHit = [&] {
    AXUIElementRef hit = probe::elementAt(desk.application, *middle);
    return hit != nullptr && CFEqual(hit, button) != 0;
  };
  const bool hitBefore = isHit();
  desk.receiver.tell("hide-button");
  const bool isChild = probe::elementBelow(window, "AXButton", "Probe") != nullptr;
  const bool hitAfter = isHit();
  CFTypeRef role = nullptr;
  const AXError status = AXUIElementCopyAttributeValue(button, CFSTR("AXRole"), &role);
  Evidence evidence;
  evidence.add("hit while it is shown", hitBefore)
      .add("among the children while hidden", isChild)
      .add("hit while hidden", hitAfter)
      .add("a message to its element gives", static_cast<int>(status));
  if (!hitBefore) return probe::answer(assumption, probe::Verdict::notShown, evidence);
  return probe::answer(
      assumption, verdictOf(!isChild && !hitAfter && status == kAXErrorInvalidUIElement), evidence);
}

/// The Apple menu is an application's own while it is in front.
int menuBar(const std::string& assumption, Desk& desk) {
  constexpr CGPoint appleMenu{20, 10};
  const auto roleThere = [&] {
    AXUIElementRef element = probe::elementAt(desk.application, appleMenu);
    return element == nullptr ? "nothing"
                              : probe::textAttribute(element, CFSTR("AXRole")).value_or("no role");
  };
  const auto isMenu = [](const std::string& role) { return role.rfind("AXMenu", 0) == 0; };
  const std::string behind = roleThere();
  desk.receiver.tell("front");
  probe::sleepMilliseconds(showMilliseconds);
  const std::string inFront = roleThere();
  const Evidence evidence =
      Evidence().add("there while it is behind", behind).add("while it is in front", inFront);
  if (!isMenu(inFront)) return probe::answer(assumption, probe::Verdict::notShown, evidence);
  return probe::answer(assumption, verdictOf(!isMenu(behind)), evidence);
}

}  // namespace

int main(int count, char** words) {
  const std::string assumption = probe::asked(count, words);
  if (const auto missing = probe::missingForElements())
    return probe::notShown(assumption, *missing);
  Receiver receiver;
  if (!receiver.isReady()) return probe::notShown(assumption, "the receiver has not started");
  Desk desk{receiver, AXUIElementCreateApplication(receiver.pid())};
  if (assumption == "element-at-point") return elementAtPoint(assumption, desk);
  if (assumption == "raised-windows") return raise(assumption, desk);
  if (assumption == "hidden-elements") return hidden(assumption, desk);
  if (assumption == "menu-bar-in-background") return menuBar(assumption, desk);
  return probe::notShown(assumption, "it is not asked here");
}
