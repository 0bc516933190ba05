// Shares a window of our own, and writes down what the stream's delegate hears when the window is
// closed, or its application ends.
#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include <dispatch/dispatch.h>

#include <mutex>
#include <string>
#include <vector>

#include "support/answer.h"
#import "support/capture.h"
#include "support/receiver.h"
#include "support/system.h"

/// Writes down what it hears.
@interface Listener : NSObject <SCStreamDelegate, SCStreamOutput>
- (std::vector<std::string>)heard;
- (long long)frames;
@end

@implementation Listener {
  std::mutex _access;
  std::vector<std::string> _heard;
  long long _frames;
}

- (void)hear:(const std::string&)text {
  const std::lock_guard lock(_access);
  _heard.push_back(text);
}

- (std::vector<std::string>)heard {
  const std::lock_guard lock(_access);
  return _heard;
}

- (long long)frames {
  const std::lock_guard lock(_access);
  return _frames;
}

- (void)stream:(SCStream*)stream didStopWithError:(NSError*)error {
  [self hear:"stopped with " + std::to_string(error.code)];
}

- (void)userDidStopStream:(SCStream*)stream {
  [self hear:"stopped by the user"];
}

- (void)streamDidBecomeInactive:(SCStream*)stream {
  [self hear:"inactive"];
}

- (void)stream:(SCStream*)stream
    didOutputSampleBuffer:(CMSampleBufferRef)sampleBuffer
                   ofType:(SCStreamOutputType)type {
  const std::lock_guard lock(_access);
  ++_frames;
}
@end

namespace {

using probe::Evidence;
using probe::Receiver;
using probe::Verdict;

/// A stream of the window that has started; nil, with a reason, otherwise.
SCStream* startStream(SCWindow* window, Listener* listener, std::string& reason) {
  constexpr std::int64_t nanosecondsMax = 10'000'000'000;
  SCStreamConfiguration* configuration = [[SCStreamConfiguration alloc] init];
  configuration.width = 64;
  configuration.height = 64;
  configuration.queueDepth = 3;
  configuration.minimumFrameInterval = CMTimeMake(1, 1);
  SCStream* stream = [[SCStream alloc]
      initWithFilter:[[SCContentFilter alloc] initWithDesktopIndependentWindow:window]
       configuration:configuration
            delegate:listener];
  [stream addStreamOutput:listener type:SCStreamOutputTypeScreen sampleHandlerQueue:nil error:nil];
  dispatch_semaphore_t semaphore = dispatch_semaphore_create(0);
  __block std::string failure = "it has not started within ten seconds";
  [stream startCaptureWithCompletionHandler:^(NSError* error) {
    failure = error == nil ? "" : error.description.UTF8String;
    dispatch_semaphore_signal(semaphore);
  }];
  dispatch_semaphore_wait(semaphore, dispatch_time(DISPATCH_TIME_NOW, nanosecondsMax));
  reason = failure;
  return reason.empty() ? stream : nil;
}

int answerFor(const std::string& assumption, const char* command) {
  constexpr double startSeconds = 1;
  constexpr double waitSeconds = 6;
  Receiver receiver;
  if (!receiver.isReady()) return probe::notShown(assumption, "the receiver has not started");
  if (!CGPreflightScreenCaptureAccess())
    return probe::notShown(assumption, "Screen Recording is not granted");
  std::string reason;
  SCWindow* window = probe::shareableWindow(receiver.window(0), reason);
  if (window == nil) return probe::notShown(assumption, reason);
  Listener* listener = [[Listener alloc] init];
  SCStream* stream = startStream(window, listener, reason);
  if (stream == nil) return probe::notShown(assumption, reason);
  probe::runLoop(startSeconds);
  const long long frames = [listener frames];
  receiver.tell(command);
  probe::runLoop(waitSeconds);
  const auto heard = [listener heard];
  const bool isStopped = probe::countThatBegin(heard, "stopped") > 0;
  // What is assumed: that it goes on without frames, and tells nobody that it has stopped.
  return probe::answer(assumption, frames == 0 ? Verdict::notShown : probe::verdictOf(!isStopped),
                       Evidence()
                           .addJson("the delegate hears", probe::jsonList(heard))
                           .add("frames before", frames)
                           .add("frames after", [listener frames] - frames));
}

}  // namespace

int main(int count, char** words) {
  @autoreleasepool {
    const std::string assumption = probe::asked(count, words);
    CGMainDisplayID();
    if (assumption == "stream-of-closed-window") return answerFor(assumption, "close");
    if (assumption == "stream-of-ended-application") return answerFor(assumption, "end");
    return probe::notShown(assumption, "it is not asked here");
  }
}
