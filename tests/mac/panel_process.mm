// Has an application of our own open a panel for files, and looks whose window that is.
#import <AppKit/AppKit.h>

#include <string>

#include "support/answer.h"
#include "support/receiver.h"
#include "support/system.h"

namespace {

using probe::Evidence;
using probe::Verdict;

constexpr const char* expected = "com.apple.appkit.xpc.openAndSavePanelService";
constexpr int panelMilliseconds = 4'000;

std::string identifierOf(CFDictionaryRef window) {
  std::int64_t pid = 0;
  const auto number = static_cast<CFNumberRef>(CFDictionaryGetValue(window, kCGWindowOwnerPID));
  if (number != nullptr) CFNumberGetValue(number, kCFNumberSInt64Type, &pid);
  NSRunningApplication* owner =
      [NSRunningApplication runningApplicationWithProcessIdentifier:static_cast<pid_t>(pid)];
  return owner.bundleIdentifier == nil ? "" : owner.bundleIdentifier.UTF8String;
}

long long countOwnedBy(const std::string& identifier) {
  CFArrayRef list = CGWindowListCopyWindowInfo(kCGWindowListOptionOnScreenOnly, kCGNullWindowID);
  if (list == nullptr) return 0;
  long long count = 0;
  for (CFIndex index = 0; index < CFArrayGetCount(list); ++index)
    count += identifierOf(static_cast<CFDictionaryRef>(CFArrayGetValueAtIndex(list, index))) ==
             identifier;
  CFRelease(list);
  return count;
}

}  // namespace

int main(int count, char** words) {
  @autoreleasepool {
    const std::string assumption = probe::asked(count, words);
    CGMainDisplayID();
    probe::Receiver receiver;
    if (!receiver.isReady()) return probe::notShown(assumption, "the receiver has not started");
    const long long before = countOwnedBy(expected);
    const long long ownBefore = countOwnedBy("com.zentrove.desk.receiver");
    receiver.tell("panel");
    probe::sleepMilliseconds(panelMilliseconds);
    const long long after = countOwnedBy(expected);
    const long long ownAfter = countOwnedBy("com.zentrove.desk.receiver");
    const bool isShown = after > before || ownAfter > ownBefore;
    return probe::answer(assumption, isShown ? probe::verdictOf(after > before) : Verdict::notShown,
                         Evidence()
                             .add("windows of the panel's process before", before)
                             .add("after", after)
                             .add("windows of the application before", ownBefore)
                             .add("afterwards", ownAfter));
  }
}
