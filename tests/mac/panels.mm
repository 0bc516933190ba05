// Shows a small panel for a second, as the guard shows its covers, in processes of their own: with
// each activation policy, set before or after the panel is made; with the guard's other settings.
// Whether it is on the screen the window list says.
#import <AppKit/AppKit.h>

#include <array>
#include <cstdio>
#include <string>

#include "support/answer.h"
#include "support/receiver.h"
#include "support/system.h"

namespace {

using probe::Evidence;
using probe::Verdict;

constexpr double shownSeconds = 1;

struct Mode {
  const char* name;
  NSApplicationActivationPolicy policy;
  bool policyFirst;
};

constexpr std::array<Mode, 4> modes = {{
    {"prohibited, set before", NSApplicationActivationPolicyProhibited, true},
    {"prohibited, set after", NSApplicationActivationPolicyProhibited, false},
    {"accessory, set before", NSApplicationActivationPolicyAccessory, true},
    {"accessory, set after", NSApplicationActivationPolicyAccessory, false},
}};

NSPanel* makePanel() {
  NSPanel* panel = [[NSPanel alloc] initWithContentRect:NSRect {
    {20, 20}, { 40, 40 }
  }
                                              styleMask:NSWindowStyleMaskNonactivatingPanel
                                                backing:NSBackingStoreBuffered
                                                  defer:NO];
  panel.level = CGShieldingWindowLevel();
  panel.collectionBehavior = NSWindowCollectionBehaviorCanJoinAllSpaces |
                             NSWindowCollectionBehaviorStationary |
                             NSWindowCollectionBehaviorFullScreenAuxiliary;
  panel.hidesOnDeactivate = NO;
  panel.releasedWhenClosed = NO;
  panel.ignoresMouseEvents = YES;
  return panel;
}

/// One mode in this process: whether its panel is on the screen.
int runMode(const Mode& mode) {
  NSApplication* application = NSApplication.sharedApplication;
  if (mode.policyFirst) [application setActivationPolicy:mode.policy];
  NSPanel* panel = makePanel();
  if (!mode.policyFirst) [application setActivationPolicy:mode.policy];
  [panel orderFrontRegardless];
  probe::runLoop(shownSeconds);
  std::printf("%d\n", probe::isOnScreen(static_cast<std::uint32_t>(panel.windowNumber)));
  return 0;
}

bool isShown(const std::string& program, std::size_t mode) {
  const std::string command = "'" + program + "' mode " + std::to_string(mode);
  FILE* const output = popen(command.c_str(), "r");
  int shown = 0;
  if (output == nullptr) return false;
  if (std::fscanf(output, "%d", &shown) != 1) shown = 0;
  pclose(output);
  return shown != 0;
}

int answerFor(const std::string& assumption, const std::string& program) {
  Evidence evidence;
  std::array<bool, modes.size()> shown{};
  for (std::size_t index = 0; index < modes.size(); ++index) {
    shown[index] = isShown(program, index);
    evidence.add(modes[index].name, shown[index] ? "on the screen" : "not on the screen");
  }
  const bool accessory = shown[2] || shown[3];
  // Without any panel there may be no screen to show it on.
  const Verdict verdict = shown[0]    ? Verdict::confirmed
                          : accessory ? Verdict::refuted
                                      : Verdict::notShown;
  return probe::answer(assumption, verdict, evidence);
}

/// The same over the full-screen space of another application.
int overFullScreen(const std::string& assumption, const std::string& program) {
  constexpr int transitionMilliseconds = 3'000;
  probe::Receiver receiver;
  if (!receiver.isReady()) return probe::notShown(assumption, "the receiver has not started");
  receiver.tell("front");
  receiver.tell("full-screen");
  probe::sleepMilliseconds(transitionMilliseconds);
  const bool isThere =
      probe::isOnScreen(receiver.window(0)) && !probe::isOnScreen(receiver.window(1));
  if (!isThere) return probe::notShown(assumption, "no full-screen space was opened");
  return answerFor(assumption, program);
}

}  // namespace

int main(int count, char** words) {
  @autoreleasepool {
    const std::string assumption = probe::asked(count, words);
    if (assumption == "mode") return runMode(modes[static_cast<std::size_t>(std::stoi(words[2]))]);
    if (assumption == "panels-over-full-screen") return overFullScreen(assumption, words[0]);
    if (assumption == "prohibited-panels") return answerFor(assumption, words[0]);
    return probe::notShown(assumption, "it is not asked here");
  }
}
