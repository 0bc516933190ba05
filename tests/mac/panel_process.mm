// Has an application of our own open a panel for files, and looks whose window that is, and whether
// it is the same one each time.
#import <AppKit/AppKit.h>

#include <algorithm>
#include <string>
#include <vector>

#include "support/answer.h"
#include "support/receiver.h"
#include "support/system.h"

namespace {

using probe::Evidence;
using probe::Verdict;
using Numbers = std::vector<long long>;

constexpr const char* service = "com.apple.appkit.xpc.openAndSavePanelService";
constexpr const char* own = "com.zentrove.desk.receiver";
constexpr int panelMilliseconds = 4'000;

long long number(CFDictionaryRef window, CFStringRef key) {
  std::int64_t value = 0;
  const auto found = static_cast<CFNumberRef>(CFDictionaryGetValue(window, key));
  if (found != nullptr) CFNumberGetValue(found, kCFNumberSInt64Type, &value);
  return value;
}

std::string identifierOf(CFDictionaryRef window) {
  const auto pid = static_cast<pid_t>(number(window, kCGWindowOwnerPID));
  NSRunningApplication* owner = [NSRunningApplication runningApplicationWithProcessIdentifier:pid];
  return owner.bundleIdentifier == nil ? "" : owner.bundleIdentifier.UTF8String;
}

/// The windows on the screen of the application with this identifier.
Numbers windowsOf(const std::string& identifier) {
  Numbers numbers;
  CFArrayRef list = CGWindowListCopyWindowInfo(kCGWindowListOptionOnScreenOnly, kCGNullWindowID);
  if (list == nullptr) return numbers;
  for (CFIndex index = 0; index < CFArrayGetCount(list); ++index) {
    const auto window = static_cast<CFDictionaryRef>(CFArrayGetValueAtIndex(list, index));
    if (identifierOf(window) == identifier) numbers.push_back(number(window, kCGWindowNumber));
  }
  CFRelease(list);
  return numbers;
}

std::string shown(const Numbers& numbers) {
  std::string text;
  for (const long long each : numbers) text += (text.empty() ? "" : ", ") + std::to_string(each);
  return "[" + text + "]";
}

/// What is in the second and not in the first.
Numbers added(const Numbers& before, const Numbers& after) {
  Numbers result;
  for (const long long each : after)
    if (std::find(before.begin(), before.end(), each) == before.end()) result.push_back(each);
  return result;
}

/// The windows that the service shows for a panel, which is closed again.
Numbers panelOf(probe::Receiver& receiver) {
  const Numbers before = windowsOf(service);
  receiver.tell("panel");
  probe::sleepMilliseconds(panelMilliseconds);
  const Numbers panel = added(before, windowsOf(service));
  receiver.tell("close-panel");
  probe::sleepMilliseconds(panelMilliseconds);
  return panel;
}

int process(const std::string& assumption, probe::Receiver& receiver) {
  const Numbers before = windowsOf(service);
  const Numbers ownBefore = windowsOf(own);
  receiver.tell("panel");
  probe::sleepMilliseconds(panelMilliseconds);
  const Numbers after = windowsOf(service);
  const Numbers ownAfter = windowsOf(own);
  const bool isItsProcess = after.size() > before.size();
  const bool isShown = isItsProcess || ownAfter.size() > ownBefore.size();
  return probe::answer(assumption, isShown ? probe::verdictOf(isItsProcess) : Verdict::notShown,
                       Evidence()
                           .addJson("windows of the panel's process before", shown(before))
                           .addJson("after", shown(after))
                           .addJson("windows of the application before", shown(ownBefore))
                           .addJson("afterwards", shown(ownAfter)));
}

int panelNumbers(const std::string& assumption, probe::Receiver& receiver) {
  const Numbers first = panelOf(receiver);
  const Numbers second = panelOf(receiver);
  const bool areShown = !first.empty() && !second.empty();
  return probe::answer(
      assumption,
      areShown ? probe::verdictOf(added(first, second).size() == second.size()) : Verdict::notShown,
      Evidence().addJson("the first panel", shown(first)).addJson("the next one", shown(second)));
}

}  // namespace

int main(int count, char** words) {
  @autoreleasepool {
    const std::string assumption = probe::asked(count, words);
    CGMainDisplayID();
    probe::Receiver receiver;
    if (!receiver.isReady()) return probe::notShown(assumption, "the receiver has not started");
    if (assumption == "panel-process") return process(assumption, receiver);
    if (assumption == "panel-numbers") return panelNumbers(assumption, receiver);
    return probe::notShown(assumption, "it is not asked here");
  }
}
