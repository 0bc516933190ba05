// Asks about an area that scrolls, in an application of our own in the background: whether its bar
// says that there is nothing to scroll, and whether what is in it can be asked to show itself.
#include <ApplicationServices/ApplicationServices.h>

#include <string>

#include "support/accessibility.h"
#include "support/answer.h"
#include "support/receiver.h"
#include "support/system.h"

namespace {

using probe::Evidence;
using probe::verdictOf;

/// Whether the area's vertical bar is enabled; "no bar" when it has none.
std::string barOf(AXUIElementRef area) {
  CFTypeRef bar = probe::copyAttribute(area, CFSTR("AXVerticalScrollBar"));
  if (bar == nullptr) return "no bar";
  CFTypeRef enabled = probe::copyAttribute(static_cast<AXUIElementRef>(bar), CFSTR("AXEnabled"));
  if (enabled == nullptr) return "nothing";
  return CFEqual(enabled, kCFBooleanTrue) != 0 ? "enabled" : "disabled";
}

int scrollBars(const std::string& assumption, AXUIElementRef area, probe::Receiver& receiver) {
  const std::string tall = barOf(area);
  receiver.tell("short-content");
  const std::string fitting = barOf(area);
  const Evidence evidence = Evidence()
                                .add("bar with something to scroll", tall)
                                .add("bar with nothing to scroll", fitting);
  if (tall != "enabled") return probe::answer(assumption, probe::Verdict::notShown, evidence);
  return probe::answer(assumption, verdictOf(fitting == "disabled"), evidence);
}

int showing(const std::string& assumption, AXUIElementRef area) {
  AXUIElementRef button = probe::elementBelow(area, "AXButton", "Probe");
  if (button == nullptr) return probe::notShown(assumption, "the receiver's button is not found");
  const auto before = probe::middleOf(button);
  const AXError status = AXUIElementPerformAction(button, CFSTR("AXScrollToVisible"));
  const auto after = probe::middleOf(button);
  const bool isMoved = before && after && before->y != after->y;
  return probe::answer(
      assumption, verdictOf(status == kAXErrorSuccess && isMoved),
      Evidence().add("the action gives", static_cast<int>(status)).add("it has moved", isMoved));
}

}  // namespace

int main(int count, char** words) {
  const std::string assumption = probe::asked(count, words);
  if (!AXIsProcessTrusted()) return probe::notShown(assumption, "Accessibility is not granted");
  probe::Receiver receiver;
  if (!receiver.isReady()) return probe::notShown(assumption, "the receiver has not started");
  receiver.tell("scroll-area");
  AXUIElementRef application = AXUIElementCreateApplication(receiver.pid());
  AXUIElementRef area = probe::elementBelow(application, "AXScrollArea");
  if (area == nullptr) return probe::notShown(assumption, "the receiver's area is not found");
  if (assumption == "disabled-scroll-bars") return scrollBars(assumption, area, receiver);
  if (assumption == "scroll-to-visible") return showing(assumption, area);
  return probe::notShown(assumption, "it is not asked here");
}
