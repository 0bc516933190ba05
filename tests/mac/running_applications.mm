// Watches an application of our own be started, hidden and ended, as long as the main thread's run
// loop turns and while it does not.
#import <AppKit/AppKit.h>

#include <memory>
#include <string>

#include "support/answer.h"
#include "support/receiver.h"
#include "support/system.h"

namespace {

using probe::Evidence;

constexpr double turnSeconds = 1;

NSRunningApplication* running(pid_t pid) {
  return [NSRunningApplication runningApplicationWithProcessIdentifier:pid];
}

bool isListed(pid_t pid) {
  for (NSRunningApplication* each in NSWorkspace.sharedWorkspace.runningApplications)
    if (each.processIdentifier == pid) return true;
  return false;
}

}  // namespace

int main(int count, char** words) {
  @autoreleasepool {
    const std::string assumption = probe::asked(count, words);
    const bool anyBefore = NSWorkspace.sharedWorkspace.runningApplications.count > 0;
    auto receiver = std::make_unique<probe::Receiver>();
    if (!receiver->isReady()) return probe::notShown(assumption, "the receiver has not started");
    const pid_t pid = receiver->pid();
    const bool listedAtOnce = isListed(pid);
    probe::runLoop(turnSeconds);
    const bool listed = isListed(pid);
    NSRunningApplication* application = running(pid);
    receiver->tell("hide");
    probe::sleepMilliseconds(static_cast<int>(turnSeconds * 1'000));
    const bool hiddenUnturned = application.hidden;
    probe::runLoop(turnSeconds);
    const bool hidden = application.hidden;
    receiver.reset();
    probe::runLoop(turnSeconds);
    const bool ended = application.terminated && !isListed(pid);
    return probe::answer(assumption, probe::verdictOf(anyBefore && listed && hidden && ended),
                         Evidence()
                             .add("applications known at the start", anyBefore)
                             .add("a new one is listed before a turn", listedAtOnce)
                             .add("after one", listed)
                             .add("hidden, before a turn", hiddenUnturned)
                             .add("after one", hidden)
                             .add("ended, after one", ended));
  }
}
