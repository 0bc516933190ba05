#import "support/capture.h"

#include <dispatch/dispatch.h>

namespace probe {

namespace {

bool isAnswered(dispatch_semaphore_t semaphore) {
  constexpr std::int64_t nanosecondsMax = 10'000'000'000;
  return dispatch_semaphore_wait(semaphore, dispatch_time(DISPATCH_TIME_NOW, nanosecondsMax)) == 0;
}

std::string errorText(NSError* error) {
  return error == nil ? "no reason given" : error.description.UTF8String;
}

std::string bytesOf(CGImageRef image) {
  CFDataRef data = CGDataProviderCopyData(CGImageGetDataProvider(image));
  if (data == nullptr) return {};
  const std::string bytes(reinterpret_cast<const char*>(CFDataGetBytePtr(data)),
                          static_cast<std::size_t>(CFDataGetLength(data)));
  CFRelease(data);
  return bytes;
}

}  // namespace

SCWindow* shareableWindow(std::uint32_t number, std::string& reason) {
  __block SCShareableContent* content = nil;
  __block std::string failure = "no answer within ten seconds";
  dispatch_semaphore_t semaphore = dispatch_semaphore_create(0);
  [SCShareableContent
      getShareableContentExcludingDesktopWindows:YES
                             onScreenWindowsOnly:YES
                               completionHandler:^(SCShareableContent* answer, NSError* error) {
                                 content = answer;
                                 failure = errorText(error);
                                 dispatch_semaphore_signal(semaphore);
                               }];
  const bool answered = isAnswered(semaphore);
  reason = answered && content != nil ? "the window is not among them" : failure;
  if (!answered) return nil;
  for (SCWindow* window in content.windows)
    if (window.windowID == number) return window;
  return nil;
}

std::string pictureOf(SCWindow* window, bool withChildWindows, std::string& reason) {
  SCStreamConfiguration* configuration = [[SCStreamConfiguration alloc] init];
  configuration.width = static_cast<std::size_t>(window.frame.size.width);
  configuration.height = static_cast<std::size_t>(window.frame.size.height);
  configuration.showsCursor = NO;
  if (@available(macOS 14.2, *)) configuration.includeChildWindows = withChildWindows;
  SCContentFilter* filter = [[SCContentFilter alloc] initWithDesktopIndependentWindow:window];
  __block std::string bytes;
  __block std::string failure = "no answer within ten seconds";
  dispatch_semaphore_t semaphore = dispatch_semaphore_create(0);
  [SCScreenshotManager captureImageWithFilter:filter
                                configuration:configuration
                            completionHandler:^(CGImageRef image, NSError* error) {
                              failure = errorText(error);
                              if (image != nullptr) bytes = bytesOf(image);
                              dispatch_semaphore_signal(semaphore);
                            }];
  if (!isAnswered(semaphore)) {
    reason = "no answer within ten seconds";
    return {};
  }
  reason = failure;
  return bytes;
}

}  // namespace probe
