#include "platform/workspace.h"

#import <AppKit/AppKit.h>

#include "platform/macos/foundation_text.h"
#include "platform/macos/same_numbers.h"

namespace workspace {

namespace {

using macos::sameNumber;

static_assert(sameNumber(ActivationPolicy::regular, NSApplicationActivationPolicyRegular));
static_assert(sameNumber(ActivationPolicy::accessory, NSApplicationActivationPolicyAccessory));
static_assert(sameNumber(ActivationPolicy::prohibited, NSApplicationActivationPolicyProhibited));

Application application(NSRunningApplication* running) {
  return {
      .pid = running.processIdentifier,
      .bundleIdentifier = macos::optionalText(running.bundleIdentifier),
      .name = macos::optionalText(running.localizedName),
      .bundlePath = macos::optionalText(running.bundleURL.path),
      .active = running.active,
      .hidden = running.hidden,
  };
}

std::optional<Application> optionalApplication(NSRunningApplication* running) {
  if (running == nil) return std::nullopt;
  return application(running);
}

std::vector<Application> list(NSArray<NSRunningApplication*>* running) {
  std::vector<Application> applications;
  for (NSRunningApplication* each in running) applications.push_back(application(each));
  return applications;
}

NSRunningApplication* running(platform::Pid pid) {
  return [NSRunningApplication runningApplicationWithProcessIdentifier:pid];
}

}  // namespace

std::optional<Application> application(platform::Pid pid) {
  @autoreleasepool {
    return optionalApplication(running(pid));
  }
}

std::vector<Application> applications(const std::string& bundleIdentifier) {
  @autoreleasepool {
    NSString* identifier = macos::foundationString(bundleIdentifier);
    return list([NSRunningApplication runningApplicationsWithBundleIdentifier:identifier]);
  }
}

std::vector<Application> applications() {
  @autoreleasepool {
    return list(NSWorkspace.sharedWorkspace.runningApplications);
  }
}

std::optional<Application> frontmost() {
  @autoreleasepool {
    return optionalApplication(NSWorkspace.sharedWorkspace.frontmostApplication);
  }
}

bool unhide(platform::Pid pid) {
  @autoreleasepool {
    return [running(pid) unhide];
  }
}

std::optional<ActivationPolicy> activationPolicy(platform::Pid pid) {
  @autoreleasepool {
    NSRunningApplication* application = running(pid);
    if (application == nil) return std::nullopt;
    return static_cast<ActivationPolicy>(application.activationPolicy);
  }
}

bool terminated(platform::Pid pid) {
  @autoreleasepool {
    NSRunningApplication* application = running(pid);
    return application == nil || application.terminated;
  }
}

void prohibitOwnActivation() {
  @autoreleasepool {
    [NSApplication.sharedApplication setActivationPolicy:NSApplicationActivationPolicyProhibited];
  }
}

}  // namespace workspace
