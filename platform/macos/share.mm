#include "platform/share.h"

#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include "platform/macos/capture_filter.h"
#include "platform/macos/completion.h"
#include "platform/macos/foundation_text.h"
#include "platform/macos/owned.h"
#include "platform/macos/window_server_connection.h"

namespace share {

namespace {

using macos::Completion;
using macos::Owned;

platform::Rect rect(const CGRect& frame) {
  return {frame.origin.x, frame.origin.y, frame.size.width, frame.size.height};
}

std::optional<Owner> owner(SCRunningApplication* application) {
  if (application == nil) return std::nullopt;
  return Owner{application.processID, macos::textOrEmpty(application.bundleIdentifier),
               macos::textOrEmpty(application.applicationName)};
}

Content describe(SCShareableContent* native) {
  Content content;
  for (SCWindow* window in native.windows) {
    content.windows.push_back({window.windowID, rect(window.frame),
                               macos::optionalText(window.title), window.windowLayer,
                               owner(window.owningApplication)});
  }
  for (SCDisplay* display in native.displays) {
    content.displays.push_back({display.displayID, rect(display.frame)});
  }
  content.native = macos::shared(Owned<CFTypeRef>((__bridge_retained CFTypeRef)native));
  return content;
}

Owned<CGImageRef> capture(SCContentFilter* filter, SCStreamConfiguration* configuration) {
  auto completion = std::make_shared<Completion<Owned<CGImageRef>>>();
  [SCScreenshotManager
      captureImageWithFilter:filter
               configuration:configuration
           completionHandler:^(CGImageRef image, NSError* error) {
             // The image is only lent to this block.
             completion->arrive(image == nullptr ? Owned<CGImageRef>() : macos::retained(image),
                                error);
           }];
  return completion->wait();
}

}  // namespace

Content content(DesktopWindows desktopWindows, Shown shown) {
  macos::connectToWindowServer();
  @autoreleasepool {
    auto completion = std::make_shared<Completion<SCShareableContent*>>();
    [SCShareableContent
        getShareableContentExcludingDesktopWindows:desktopWindows == DesktopWindows::excluded
                               onScreenWindowsOnly:shown == Shown::onScreen
                                 completionHandler:^(SCShareableContent* content, NSError* error) {
                                   completion->arrive(content, error);
                                 }];
    return describe(completion->wait());
  }
}

image::Image screenshot(const Content& content, const Filter& filter,
                        const Configuration& configuration) {
  macos::connectToWindowServer();
  @autoreleasepool {
    return image::Image(macos::shared(capture(macos::captureFilter(content, filter),
                                              macos::captureConfiguration(configuration))));
  }
}

}  // namespace share
