// What can be captured, and how a capture is asked for.
#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include "platform/macos/standins/foundation.h"
#include "platform/macos/standins/graphics.h"
#include "platform/macos/standins/objects.h"
#include "platform/macos/standins/sharing_state.h"
#include "platform/macos/standins/text.h"

using standins::foundationText;
using standins::optionalText;
using standins::plainText;
using standins::sharing;

@interface SCRunningApplication ()
@property(readwrite) NSString* bundleIdentifier;
@property(readwrite) NSString* applicationName;
@property(readwrite) pid_t processID;
@end
@implementation SCRunningApplication
@end

@interface SCWindow ()
@property(readwrite) CGWindowID windowID;
@property(readwrite) CGRect frame;
@property(readwrite, nullable) NSString* title;
@property(readwrite) NSInteger windowLayer;
@property(readwrite, nullable) SCRunningApplication* owningApplication;
@end
@implementation SCWindow
@end

@interface SCDisplay ()
@property(readwrite) CGDirectDisplayID displayID;
@property(readwrite) CGRect frame;
@end
@implementation SCDisplay
@end

@interface SCShareableContent ()
@property(readwrite) NSArray<SCWindow*>* windows;
@property(readwrite) NSArray<SCDisplay*>* displays;
@end

namespace {

SCRunningApplication* application(const standins::SharedOwner& owner) {
  SCRunningApplication* made = [[SCRunningApplication alloc] init];
  made.bundleIdentifier = foundationText(owner.bundleIdentifier);
  made.applicationName = foundationText(owner.name);
  made.processID = owner.pid;
  return made;
}

SCWindow* window(const standins::SharedWindow& content) {
  SCWindow* made = [[SCWindow alloc] init];
  made.windowID = content.number;
  made.frame = content.frame;
  made.title = optionalText(content.title);
  made.windowLayer = content.layer;
  if (content.owner) made.owningApplication = application(*content.owner);
  return made;
}

SCDisplay* display(const standins::SharedDisplay& content) {
  SCDisplay* made = [[SCDisplay alloc] init];
  made.displayID = content.id;
  made.frame = content.frame;
  return made;
}

SCShareableContent* content() {
  NSMutableArray<SCWindow*>* windows = [NSMutableArray arrayWithCapacity:0];
  for (const auto& each : sharing().windows) [windows addObject:window(each)];
  NSMutableArray<SCDisplay*>* displays = [NSMutableArray arrayWithCapacity:0];
  for (const auto& each : sharing().displays) [displays addObject:display(each)];
  SCShareableContent* content = [[SCShareableContent alloc] init];
  content.windows = windows;
  content.displays = displays;
  return content;
}

std::string numbers(NSArray<SCWindow*>* windows) {
  std::string text;
  for (SCWindow* each in windows) text += " " + std::to_string(each.windowID);
  return text;
}

}  // namespace

@implementation SCShareableContent
+ (void)getShareableContentExcludingDesktopWindows:(BOOL)excludeDesktopWindows
                               onScreenWindowsOnly:(BOOL)onScreenWindowsOnly
                                 completionHandler:
                                     (void (^)(SCShareableContent*, NSError*))handler {
  standins::record("content" + std::string(excludeDesktopWindows ? " without desktop" : "") +
                   (onScreenWindowsOnly ? " on screen" : ""));
  standins::answerAsTold([handler](const std::string& error, bool hasResult) {
    handler(hasResult ? content() : nil, standins::errorSaying(error));
  });
}
@end

@interface SCContentFilter ()
@property(strong) NSString* text;
@end
@implementation SCContentFilter
- (instancetype)initWithDesktopIndependentWindow:(SCWindow*)window {
  self = [super init];
  self.text = foundationText("window " + std::to_string(window.windowID));
  return self;
}
- (instancetype)initWithDisplay:(SCDisplay*)display excludingWindows:(NSArray<SCWindow*>*)excluded {
  self = [super init];
  self.text = foundationText("display " + std::to_string(display.displayID) + " without" +
                             numbers(excluded));
  return self;
}
- (instancetype)initWithDisplay:(SCDisplay*)display
               includingWindows:(NSArray<SCWindow*>*)includedWindows {
  self = [super init];
  self.text = foundationText("display " + std::to_string(display.displayID) + " with" +
                             numbers(includedWindows));
  return self;
}
- (NSString*)description {
  return self.text;
}
@end

@implementation SCStreamConfiguration
- (NSString*)description {
  std::string text = std::to_string(self.width) + "x" + std::to_string(self.height);
  if (self.sourceRect.size.width > 0) text += " of " + standins::text(self.sourceRect);
  if (self.showsCursor) text += " cursor";
  if (self.capturesAudio) text += " audio";
  if (self.queueDepth > 0) text += " queue " + std::to_string(self.queueDepth);
  if (self.minimumFrameInterval.timescale > 0) {
    text += " every " + std::to_string(self.minimumFrameInterval.value) + "/" +
            std::to_string(self.minimumFrameInterval.timescale);
  }
  if (self.streamName != nil) text += " named " + plainText(self.streamName);
  if (self.includeChildWindows) text += " children";
  // Not held by the configuration.
  if (self.backgroundColor != nullptr) {
    text += " " + standins::describe((CFTypeRef)self.backgroundColor);
  }
  return foundationText(text);
}
@end
