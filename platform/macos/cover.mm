#include "platform/cover.h"

#import <AppKit/AppKit.h>

#include <utility>

#include "platform/macos/cover_view.h"
#include "platform/macos/foundation_text.h"

namespace {

struct Handlers {
  std::function<void()> terminationRequest;
  std::function<void()> screenChange;
};

// Kept until the process ends.
Handlers& handlers() {
  static auto& kept = *new Handlers;
  return kept;
}

}  // namespace

/// Hears of the request to terminate, and of changes of the screens.
@interface DriverApplicationListener : NSObject <NSApplicationDelegate>
@end

@implementation DriverApplicationListener

- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)sender {
  if (!handlers().terminationRequest) return NSTerminateNow;
  handlers().terminationRequest();
  return NSTerminateCancel;
}

- (void)applicationDidChangeScreenParameters:(NSNotification*)notification {
  if (handlers().screenChange) handlers().screenChange();
}

@end

namespace cover {

namespace {

struct ShownPanel {
  NSPanel* panel;
  NSArray<NSTextField*>* labels;
};

// A panel is shown as long as somebody holds it: here, until the process ends.
std::vector<ShownPanel>& shownPanels() {
  static auto& panels = *new std::vector<ShownPanel>;
  return panels;
}

// Never activates the application, and can never become key.
NSPanel* makePanel(const NSRect& frame) {
  NSPanel* panel = [[NSPanel alloc] initWithContentRect:frame
                                              styleMask:NSWindowStyleMaskNonactivatingPanel
                                                backing:NSBackingStoreBuffered
                                                  defer:NO];
  panel.releasedWhenClosed = NO;
  // The application is never active, and a panel would be hidden all the time.
  panel.hidesOnDeactivate = NO;
  // Nor does it go when the application is hidden, with others or by itself.
  panel.canHide = NO;
  panel.opaque = NO;
  panel.backgroundColor = NSColor.clearColor;
  panel.hasShadow = NO;
  panel.ignoresMouseEvents = YES;
  panel.collectionBehavior = NSWindowCollectionBehaviorCanJoinAllSpaces |
                             NSWindowCollectionBehaviorStationary |
                             NSWindowCollectionBehaviorFullScreenAuxiliary;
  return panel;
}

void listen() {
  @autoreleasepool {
    // The application does not hold its delegate.
    static DriverApplicationListener* const listener = [[DriverApplicationListener alloc] init];
    NSApplication.sharedApplication.delegate = listener;
  }
}

}  // namespace

std::vector<platform::Rect> screens() {
  @autoreleasepool {
    std::vector<platform::Rect> frames;
    for (NSScreen* screen in NSScreen.screens) {
      const NSRect frame = screen.frame;
      frames.push_back({frame.origin.x, frame.origin.y, frame.size.width, frame.size.height});
    }
    return frames;
  }
}

platform::Size measure(const std::string& text, const Font& font) {
  @autoreleasepool {
    NSTextField* label = macos::makeLabel(text, font);
    [label sizeToFit];
    return {label.frame.size.width, label.frame.size.height};
  }
}

std::size_t show(const Panel& panel) {
  @autoreleasepool {
    const NSRect frame = macos::rectangle(panel.frame);
    const macos::CoverView view = macos::makeCoverView(panel.view);
    NSPanel* native = makePanel(frame);
    [native setFrame:frame display:NO];
    native.level = panel.level;
    native.contentView = view.root;
    [native orderFrontRegardless];
    // Else it is drawn when the run loop turns next, after the caller has said that it is there.
    macos::drawAtOnce();
    shownPanels().push_back({native, view.labels});
    return shownPanels().size() - 1;
  }
}

void setLabel(std::size_t panel, std::size_t label, const std::string& text,
              const platform::Rect& frame) {
  @autoreleasepool {
    NSTextField* native = shownPanels().at(panel).labels[label];
    native.stringValue = macos::foundationString(text);
    native.frame = macos::rectangle(frame);
  }
}

void place(std::size_t panel, const platform::Rect& frame) {
  @autoreleasepool {
    NSPanel* native = shownPanels().at(panel).panel;
    [native setFrame:macos::rectangle(frame) display:YES];
    [native orderFrontRegardless];
  }
}

void close(std::size_t panel) {
  @autoreleasepool {
    ShownPanel& shown = shownPanels().at(panel);
    [shown.panel orderOut:nil];
    // The place stays: panels are named by it.
    shown = {nil, nil};
  }
}

void onScreenChange(std::function<void()> handler) {
  handlers().screenChange = std::move(handler);
  listen();
}

void onTerminationRequest(std::function<void()> handler) {
  handlers().terminationRequest = std::move(handler);
  listen();
}

void runApplication() {
  @autoreleasepool {
    [NSApplication.sharedApplication run];
  }
}

}  // namespace cover
