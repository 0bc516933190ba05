// Shares a window of our own, and writes down what the stream's delegate hears when the window is
// closed, or its application ends; when its frames come; and how a stream is refused.
#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include <dispatch/dispatch.h>

#include <functional>
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

using Completion = void (^)(NSError*);

constexpr long long unanswered = 1;  // no code of an error, which are below zero
constexpr double intervalSeconds = 1;

SCStreamConfiguration* validConfiguration() {
  SCStreamConfiguration* configuration = [[SCStreamConfiguration alloc] init];
  configuration.width = 64;
  configuration.height = 64;
  configuration.queueDepth = 3;
  configuration.minimumFrameInterval = CMTimeMake(static_cast<int64_t>(intervalSeconds), 1);
  return configuration;
}

SCContentFilter* filterOf(SCWindow* window) {
  return [[SCContentFilter alloc] initWithDesktopIndependentWindow:window];
}

/// The code of the error with which a request is answered; 0 for none.
long long codeOf(const std::function<void(Completion)>& request) {
  constexpr std::int64_t nanosecondsMax = 10'000'000'000;
  dispatch_semaphore_t semaphore = dispatch_semaphore_create(0);
  __block long long code = unanswered;
  request(^(NSError* error) {
    code = error == nil ? 0 : static_cast<long long>(error.code);
    dispatch_semaphore_signal(semaphore);
  });
  const auto deadline = dispatch_time(DISPATCH_TIME_NOW, nanosecondsMax);
  return dispatch_semaphore_wait(semaphore, deadline) == 0 ? code : unanswered;
}

/// A stream of the window, and the code with which its start is answered.
SCStream* startStream(SCWindow* window, Listener* listener, SCStreamConfiguration* configuration,
                      long long& code) {
  SCStream* stream = [[SCStream alloc] initWithFilter:filterOf(window)
                                        configuration:configuration
                                             delegate:listener];
  [stream addStreamOutput:listener type:SCStreamOutputTypeScreen sampleHandlerQueue:nil error:nil];
  code =
      codeOf([&](Completion completion) { [stream startCaptureWithCompletionHandler:completion]; });
  return stream;
}

int notStarted(const std::string& assumption, long long code) {
  return probe::notShown(assumption, "the stream has not started: " + std::to_string(code));
}

/// The window closes, or its application ends.
int withoutWindow(const std::string& assumption, SCWindow* window, Receiver& receiver,
                  const char* command) {
  constexpr double startSeconds = 1;
  constexpr double waitSeconds = 6;
  Listener* listener = [[Listener alloc] init];
  long long code = 0;
  SCStream* stream = startStream(window, listener, validConfiguration(), code);
  if (code != 0) return notStarted(assumption, code);
  probe::runLoop(startSeconds);
  const long long frames = [listener frames];
  receiver.tell(command);
  probe::runLoop(waitSeconds);
  const auto heard = [listener heard];
  const bool isStopped = probe::countThatBegin(heard, "stopped") > 0;
  // What is assumed: that it goes on without frames, and tells nobody that it has stopped.
  return probe::answer(assumption, frames == 0 ? Verdict::notShown : probe::verdictOf(!isStopped),
                       Evidence()
                           .add("stream", stream != nil)
                           .addJson("the delegate hears", probe::jsonList(heard))
                           .add("frames before", frames)
                           .add("frames after", [listener frames] - frames));
}

int framesOfStream(const std::string& assumption, SCWindow* window) {
  constexpr int intervals = 5;
  constexpr double atOnceSeconds = intervalSeconds / 2;
  Listener* listener = [[Listener alloc] init];
  long long code = 0;
  SCStream* stream = startStream(window, listener, validConfiguration(), code);
  if (code != 0) return notStarted(assumption, code);
  probe::runLoop(atOnceSeconds);
  const long long first = [listener frames];
  probe::runLoop(intervals * intervalSeconds);
  const long long later = [listener frames] - first;
  return probe::answer(assumption, probe::verdictOf(first == 1 && later <= intervals),
                       Evidence()
                           .add("stream", stream != nil)
                           .add("frames within half an interval", first)
                           .add("in the five intervals after that", later));
}

int windowThatHasGone(const std::string& assumption, SCWindow* window, Receiver& receiver) {
  constexpr int closeMilliseconds = 1'000;
  constexpr long long noSource = -3815;
  receiver.tell("close");
  probe::sleepMilliseconds(closeMilliseconds);
  long long code = 0;
  startStream(window, [[Listener alloc] init], validConfiguration(), code);
  return probe::answer(assumption, probe::verdictOf(code == noSource),
                       Evidence().add("starting gives", code));
}

int refusals(const std::string& assumption, SCWindow* window) {
  Evidence evidence;
  bool holds = true;
  const auto compare = [&](const char* what, long long code, long long assumed) {
    holds = holds && code == assumed;
    evidence.add(what, code);
  };
  Listener* listener = [[Listener alloc] init];
  long long code = 0;
  SCStreamConfiguration* configuration = validConfiguration();
  SCStream* stream = startStream(window, listener, configuration, code);
  if (code != 0) return notStarted(assumption, code);
  codeOf([&](Completion completion) { [stream stopCaptureWithCompletionHandler:completion]; });
  compare("a filter for a stream that has stopped", codeOf([&](Completion completion) {
            [stream updateContentFilter:filterOf(window) completionHandler:completion];
          }),
          -3809);
  compare("a configuration for it", codeOf([&](Completion completion) {
            [stream updateConfiguration:configuration completionHandler:completion];
          }),
          -3810);
  compare("stopping it again", codeOf([&](Completion completion) {
            [stream stopCaptureWithCompletionHandler:completion];
          }),
          -3808);
  constexpr long long invalidParameter = -3812;
  SCStreamConfiguration* wide = validConfiguration();
  wide.width = 0;
  startStream(window, listener, wide, code);
  compare("starting with no width", code, invalidParameter);
  SCStreamConfiguration* deep = validConfiguration();
  deep.queueDepth = 9;
  startStream(window, listener, deep, code);
  compare("starting with nine frames", code, invalidParameter);
  return probe::answer(assumption, probe::verdictOf(holds), evidence);
}

int answerFor(const std::string& assumption) {
  Receiver receiver;
  if (!receiver.isReady()) return probe::notShown(assumption, "the receiver has not started");
  if (!CGPreflightScreenCaptureAccess())
    return probe::notShown(assumption, "Screen Recording is not granted");
  std::string reason;
  SCWindow* window = probe::shareableWindow(receiver.window(0), reason);
  if (window == nil) return probe::notShown(assumption, reason);
  if (assumption == "stream-of-closed-window")
    return withoutWindow(assumption, window, receiver, "close");
  if (assumption == "stream-of-ended-application")
    return withoutWindow(assumption, window, receiver, "end");
  if (assumption == "stream-frames") return framesOfStream(assumption, window);
  if (assumption == "stream-refusals") return refusals(assumption, window);
  if (assumption == "window-that-has-gone") return windowThatHasGone(assumption, window, receiver);
  return probe::notShown(assumption, "it is not asked here");
}

}  // namespace

int main(int count, char** words) {
  @autoreleasepool {
    CGMainDisplayID();
    return answerFor(probe::asked(count, words));
  }
}
