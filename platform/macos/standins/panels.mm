#include "platform/macos/standins/panels.h"

#import <AppKit/AppKit.h>
#import <QuartzCore/QuartzCore.h>

#include <utility>

#include "platform/macos/standins/graphics.h"
#include "platform/macos/standins/objects.h"
#include "platform/macos/standins/text.h"
#include "platform/macos/standins/views.h"

using standins::plainText;
using standins::record;

namespace {

struct Desktop {
  std::vector<CGRect> screens;
  std::vector<void*> panels;  // on a screen, borrowed
};

Desktop& desktop() {
  static auto& desktop = *new Desktop;
  return desktop;
}

}  // namespace

@interface NSScreen ()
@property(readwrite) NSRect frame;
@end
@implementation NSScreen
+ (NSArray<NSScreen*>*)screens {
  NSMutableArray<NSScreen*>* screens = [NSMutableArray arrayWithCapacity:0];
  for (const CGRect& frame : desktop().screens) {
    NSScreen* screen = [[NSScreen alloc] init];
    screen.frame = frame;
    [screens addObject:screen];
  }
  return screens;
}
@end

@interface NSWindow ()
@property NSRect place;
@property NSWindowStyleMask style;
// Whether what is on it can be seen, too.
@property BOOL isDrawn;
@end
@implementation NSWindow
@synthesize backgroundColor = _backgroundColor;
- (NSColor*)backgroundColor {
  return _backgroundColor;
}
- (void)setBackgroundColor:(NSColor*)colour {
  _backgroundColor = colour == nil ? NSColor.whiteColor : colour;
}
- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backingStoreType
                              defer:(BOOL)flag {
  self = [super init];
  self.place = contentRect;
  self.style = style;
  self.opaque = YES;
  self.hasShadow = YES;
  self.releasedWhenClosed = YES;
  self.hidesOnDeactivate = YES;
  self.canHide = YES;
  return self;
}
- (void)setFrame:(NSRect)frameRect display:(BOOL)flag {
  self.place = frameRect;
}
- (void)orderFrontRegardless {
  std::erase(desktop().panels, (__bridge void*)self);
  desktop().panels.push_back((__bridge void*)self);
}
- (void)orderOut:(id)sender {
  std::erase(desktop().panels, (__bridge void*)self);
  self.isDrawn = NO;
}
- (void)dealloc {
  [self orderOut:nil];
}
@end

@implementation NSPanel
@end

// Else it is drawn when the run loop turns, which no test has.
@implementation CATransaction
+ (void)flush {
  for (void* each : desktop().panels) ((__bridge NSWindow*)each).isDrawn = YES;
}
@end

namespace {

std::string describe(NSPanel* panel) {
  std::string result = "panel " + standins::text(panel.place) + " level " +
                       std::to_string(panel.level) + " style " + std::to_string(panel.style) +
                       " spaces " + std::to_string(panel.collectionBehavior) + " on " +
                       plainText(panel.backgroundColor.description);
  if (panel.opaque) result += " opaque";
  if (panel.hasShadow) result += " shadow";
  if (panel.hidesOnDeactivate) result += " hides";
  if (panel.canHide) result += " can be hidden";
  if (!panel.isDrawn) result += " not drawn";
  if (panel.releasedWhenClosed) result += " goes";
  if (!panel.ignoresMouseEvents) result += " mouse";
  return result + "\n" + standins::describe((NSView*)panel.contentView);
}

// Made when first asked for, kept for ever.
NSApplication* application = nil;

}  // namespace

@implementation NSApplication
+ (NSApplication*)sharedApplication {
  if (application == nil) {
    application = [[NSApplication alloc] init];
    standins::keepForEver((__bridge CFTypeRef)application);
  }
  return application;
}
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy {
  record("activation policy " + std::to_string(activationPolicy));
  return YES;
}
- (void)run {
  record("run");
}
@end

namespace standins {

void setScreens(std::vector<CGRect> frames) { desktop().screens = std::move(frames); }

std::vector<std::string> shownPanels() {
  @autoreleasepool {
    std::vector<std::string> panels;
    for (void* each : desktop().panels) panels.push_back(::describe((__bridge NSPanel*)each));
    return panels;
  }
}

std::optional<bool> askToTerminate() {
  @autoreleasepool {
    id<NSApplicationDelegate> delegate = NSApplication.sharedApplication.delegate;
    if (delegate == nil) return std::nullopt;
    return [delegate applicationShouldTerminate:application] == NSTerminateNow;
  }
}

void keepDelegateForEver() {
  @autoreleasepool {
    keepForEver((__bridge CFTypeRef)NSApplication.sharedApplication.delegate);
  }
}

void changeScreens() {
  @autoreleasepool {
    // What it says is of no account.
    NSNotification* notification = (id)[NSMutableArray array];
    [NSApplication.sharedApplication.delegate applicationDidChangeScreenParameters:notification];
  }
}

}  // namespace standins
