#include "platform/macos/standins/applications.h"

#import <AppKit/AppKit.h>

#include <utility>

#include "platform/macos/standins/looks.h"
#include "platform/macos/standins/objects.h"
#include "platform/macos/standins/text.h"

using standins::optionalText;
using standins::plainText;
using standins::record;

namespace {

struct Workspace {
  std::vector<standins::RunningApplication> applications;
  CGImageRef icon = nullptr;
};

Workspace& workspace() {
  static auto& workspace = *new Workspace;
  return workspace;
}

}  // namespace

@interface NSRunningApplication ()
@property(nonatomic) standins::RunningApplication content;
@end
@implementation NSRunningApplication
+ (NSRunningApplication*)made:(const standins::RunningApplication&)content {
  NSRunningApplication* made = [[NSRunningApplication alloc] init];
  made.content = content;
  return made;
}
+ (instancetype)runningApplicationWithProcessIdentifier:(pid_t)pid {
  for (const auto& each : workspace().applications) {
    if (each.pid == pid) return [NSRunningApplication made:each];
  }
  return nil;
}
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)identifier {
  NSMutableArray<NSRunningApplication*>* found = [NSMutableArray arrayWithCapacity:0];
  for (const auto& each : workspace().applications) {
    if (each.bundleIdentifier == plainText(identifier)) {
      [found addObject:[NSRunningApplication made:each]];
    }
  }
  return found;
}
- (BOOL)isTerminated {
  return self.content.terminated;
}
- (BOOL)isHidden {
  return self.content.hidden;
}
- (BOOL)isActive {
  return self.content.active;
}
- (NSApplicationActivationPolicy)activationPolicy {
  return NSApplicationActivationPolicy(self.content.policy);
}
- (NSString*)localizedName {
  return optionalText(self.content.name);
}
- (NSString*)bundleIdentifier {
  return optionalText(self.content.bundleIdentifier);
}
- (NSURL*)bundleURL {
  NSString* path = optionalText(self.content.path);
  return path == nil ? nil : [NSURL fileURLWithPath:path];
}
- (pid_t)processIdentifier {
  return self.content.pid;
}
- (BOOL)unhide {
  record("unhide " + std::to_string(self.content.pid));
  return YES;
}
@end

@implementation NSWorkspace
+ (NSWorkspace*)sharedWorkspace {
  return [[NSWorkspace alloc] init];
}
- (NSArray<NSRunningApplication*>*)runningApplications {
  NSMutableArray<NSRunningApplication*>* all = [NSMutableArray arrayWithCapacity:0];
  for (const auto& each : workspace().applications)
    [all addObject:[NSRunningApplication made:each]];
  return all;
}
- (NSRunningApplication*)frontmostApplication {
  for (const auto& each : workspace().applications) {
    if (each.active) return [NSRunningApplication made:each];
  }
  return nil;
}
- (NSImage*)iconForFile:(NSString*)fullPath {
  record("icon of " + plainText(fullPath));
  NSImage* image = [[NSImage alloc] init];
  if (workspace().icon != nullptr) image.picture = (CGImageRef)CFRetain(workspace().icon);
  return image;
}
@end

namespace standins {

void setApplications(std::vector<RunningApplication> applications) {
  workspace().applications = std::move(applications);
}

void setIcon(CGImageRef image) { workspace().icon = image == nullptr ? nullptr : kept(image); }

}  // namespace standins
