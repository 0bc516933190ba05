// The application that probes post to. It stays in the background unless it is told to come to
// front, and writes a line for each event that reaches it, and for each that hits its view:
//
//   ready PID WINDOW WINDOW
//   event TYPE WINDOW X Y FLAGS SUBTYPE CLICKS NUMBER TAG FIELD51 FIELD58 KEYWINDOW ACTIVE
//   key TYPE WINDOW CODE LENGTH FLAGS TAG KEYWINDOW ACTIVE
//   press WINDOW X Y CLICKS
//   state KEYWINDOW ACTIVE
//
// X and Y are in the window, upwards. On its standard input it takes a command a line: see `obey`.
#import <AppKit/AppKit.h>

#include <cstdio>
#include <iostream>
#include <string>
#include <thread>

namespace {

constexpr NSUInteger keyDownType = 10;
constexpr NSUInteger keyUpType = 11;
constexpr NSUInteger applicationDefinedType = 13;

NSWindow* windows[2];
NSWindow* childWindow;
NSButton* button;
NSScrollView* scrollArea;
NSOpenPanel* panel;

long long field(NSEvent* event, int number) {
  return CGEventGetIntegerValueField(event.CGEvent, static_cast<CGEventField>(number));
}

void tell(const std::string& line) {
  std::puts(line.c_str());
  std::fflush(stdout);
}

std::string state() {
  return std::to_string(NSApp.keyWindow.windowNumber) + (NSApp.active ? " 1" : " 0");
}

void tellKey(NSEvent* event) {
  char line[200];
  std::snprintf(line, sizeof line, "key %lu %ld %u %lu %lu %lld ",
                static_cast<unsigned long>(event.type), static_cast<long>(event.windowNumber),
                event.keyCode, static_cast<unsigned long>(event.characters.length),
                static_cast<unsigned long>(event.modifierFlags),
                field(event, kCGEventSourceUserData));
  tell(line + state());
}

void tellEvent(NSEvent* event) {
  constexpr int targetWindow = 51;
  constexpr int clickGroup = 58;
  // AppKit knows the subtype of its own events alone; the others' is in the event below.
  const long long subtype =
      event.type == applicationDefinedType ? event.subtype : field(event, kCGMouseEventSubtype);
  char line[300];
  std::snprintf(line, sizeof line, "event %lu %ld %.1f %.1f %lu %lld %lld %lld %lld %lld %lld ",
                static_cast<unsigned long>(event.type), static_cast<long>(event.windowNumber),
                event.locationInWindow.x, event.locationInWindow.y,
                static_cast<unsigned long>(event.modifierFlags), subtype,
                field(event, kCGMouseEventClickState), field(event, kCGMouseEventNumber),
                field(event, kCGEventSourceUserData), field(event, targetWindow),
                field(event, clickGroup));
  tell(line + state());
}

}  // namespace

@interface Receiver : NSApplication
@end

@implementation Receiver
- (void)sendEvent:(NSEvent*)event {
  const bool isKey = event.type == keyDownType || event.type == keyUpType;
  isKey ? tellKey(event) : tellEvent(event);
  [super sendEvent:event];
}
@end

/// Takes keys and presses, and does nothing with them.
@interface Target : NSView
@end

@implementation Target
- (BOOL)acceptsFirstResponder {
  return YES;
}

- (void)mouseDown:(NSEvent*)event {
  char line[100];
  std::snprintf(line, sizeof line, "press %ld %.1f %.1f %ld", static_cast<long>(event.windowNumber),
                event.locationInWindow.x, event.locationInWindow.y,
                static_cast<long>(event.clickCount));
  tell(line);
}

- (void)keyDown:(NSEvent*)event {
}
@end

namespace {

/// A window of 300 by 200 points whose content begins there, counted upwards.
NSWindow* makeWindow(NSString* title, CGPoint origin) {
  NSWindow* window =
      [[NSWindow alloc] initWithContentRect:{
        origin, { 300, 200 }
      }
                                  styleMask:NSWindowStyleMaskTitled | NSWindowStyleMaskResizable |
                                            NSWindowStyleMaskMiniaturizable
                                    backing:NSBackingStoreBuffered
                                      defer:NO];
  window.title = title;
  window.collectionBehavior = NSWindowCollectionBehaviorFullScreenPrimary;
  window.releasedWhenClosed = NO;
  Target* target = [[Target alloc] initWithFrame:{{0, 0}, {300, 200}}];
  window.contentView = target;
  [window makeFirstResponder:target];
  [window orderFrontRegardless];
  return window;
}

void addChild() {
  childWindow = [[NSWindow alloc] initWithContentRect:{
    {150, 150}, { 400, 60 }
  }
                                            styleMask:NSWindowStyleMaskBorderless
                                              backing:NSBackingStoreBuffered
                                                defer:NO];
  childWindow.backgroundColor = NSColor.blackColor;
  [windows[0] addChildWindow:childWindow ordered:NSWindowAbove];
}

/// Five thousand texts, for whoever measures how long a tree takes to be read.
void addTree() {
  constexpr int elements = 5'000;
  for (int element = 0; element < elements; ++element) {
    NSTextField* label = [NSTextField labelWithString:@"element"];
    label.frame = {{static_cast<CGFloat>(element % 250), static_cast<CGFloat>(element / 250 * 8)},
                   {40, 8}};
    [windows[1].contentView addSubview:label];
  }
}

void addButton() {
  button = [NSButton buttonWithTitle:@"Probe" target:nil action:nil];
  button.frame = {{100, 80}, {100, 30}};
  [windows[0].contentView addSubview:button];
}

/// A field, one that is disabled, and one for passwords.
void addFields() {
  const Class kinds[] = {[NSTextField class], [NSTextField class], [NSSecureTextField class]};
  NSString* const texts[] = {@"a\U0001F600b", @"fixed", @"secret"};
  for (int place = 0; place < 3; ++place) {
    NSTextField* field = [[kinds[place] alloc] initWithFrame:{{20, 20 + place * 40.0}, {200, 24}}];
    field.stringValue = texts[place];
    field.enabled = place != 1;
    [windows[1].contentView addSubview:field];
  }
}

/// Puts the second window on the first.
void overlap() {
  [windows[1] setFrameOrigin:windows[0].frame.origin];
  [windows[1] orderFrontRegardless];
}

void openPanel() {
  panel = [NSOpenPanel openPanel];
  [panel beginWithCompletionHandler:^(NSInteger){
  }];
}

/// An area with more in it than it shows: a button at the end that is out of sight.
void addScrollArea() {
  scrollArea = [[NSScrollView alloc] initWithFrame:{{20, 20}, {200, 150}}];
  scrollArea.scrollerStyle = NSScrollerStyleLegacy;
  scrollArea.hasVerticalScroller = YES;
  NSView* content = [[NSView alloc] initWithFrame:{{0, 0}, {180, 2'000}}];
  scrollArea.documentView = content;
  button = [NSButton buttonWithTitle:@"Probe" target:nil action:nil];
  button.frame = {{20, 1'900}, {100, 30}};
  [content addSubview:button];
  [windows[1].contentView addSubview:scrollArea];
}

void obey(const std::string& command) {
  if (command == "state") tell("state " + state());
  if (command == "front") [NSApp activateIgnoringOtherApps:YES];
  if (command == "key") [windows[0] makeKeyAndOrderFront:nil];
  if (command == "hide") [NSApp hide:nil];
  if (command == "child") addChild();
  if (command == "overlap") overlap();
  if (command == "button") addButton();
  if (command == "hide-button") button.hidden = YES;
  if (command == "fields") addFields();
  if (command == "close") [windows[0] close];
  if (command == "full-screen") [windows[0] toggleFullScreen:nil];
  if (command == "panel") openPanel();
  if (command == "close-panel") [panel cancel:nil];
  if (command == "scroll-area") addScrollArea();
  if (command == "short-content") scrollArea.documentView.frame = {{0, 0}, {180, 100}};
  if (command == "tree") addTree();
  if (command == "end") std::exit(0);
  if (command != "state") tell("done");
}

void obeyLines() {
  for (std::string line; std::getline(std::cin, line);) {
    dispatch_async(dispatch_get_main_queue(), ^{
      obey(line);
    });
  }
  // Whoever started it has gone.
  std::_Exit(0);
}

}  // namespace

int main() {
  @autoreleasepool {
    Receiver* const application = static_cast<Receiver*>([Receiver sharedApplication]);
    [application setActivationPolicy:NSApplicationActivationPolicyRegular];
    windows[0] = makeWindow(@"Receiver 1", {100, 300});
    windows[1] = makeWindow(@"Receiver 2", {420, 300});
    dispatch_async(dispatch_get_main_queue(), ^{
      tell("ready " + std::to_string(getpid()) + " " + std::to_string(windows[0].windowNumber) +
           " " + std::to_string(windows[1].windowNumber));
    });
    std::thread(obeyLines).detach();
    [application run];
  }
  return 0;
}
