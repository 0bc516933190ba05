#import <CoreMedia/CoreMedia.h>
#import <ScreenCaptureKit/ScreenCaptureKit.h>
#include <dispatch/dispatch.h>

#include <atomic>
#include <utility>

#include "platform/macos/capture_filter.h"
#include "platform/macos/completion.h"
#include "platform/macos/foundation_text.h"
#include "platform/macos/owned.h"
#include "platform/macos/window_server_connection.h"
#include "platform/share.h"

/// A stream with all that has to live as long as it does: the system keeps no reference to most of
/// it.
@interface DriverStream : NSObject <SCStreamDelegate, SCStreamOutput>
/// Nil once it has ended: else the two might hold each other for ever.
@property(strong) SCStream* stream;
- (instancetype)initWithFilter:(SCContentFilter*)filter
                 configuration:(SCStreamConfiguration*)configuration
                        onStop:(share::StopHandler)onStop;
/// Has frames come on a serial queue with this label.
- (BOOL)takeFramesOnQueue:(const char*)label error:(NSError**)error;
/// Called when it has started: from now on the stop handler is called, at most once. False when it
/// has stopped already.
- (BOOL)beginToRun;
/// From now on the stop handler is not called.
- (void)silence;
/// What macOS 14.4 and the releases soon after it may call in place of `stream:didStopWithError:`.
/// Neither older SDKs declare it nor newer ones.
- (void)userDidStopStream:(SCStream*)stream;
@end

namespace {

enum class Phase { starting, running, silent };

}  // namespace

@implementation DriverStream {
  dispatch_queue_t _queue;
  share::StopHandler _onStop;
  std::atomic<Phase> _phase;
}

- (instancetype)initWithFilter:(SCContentFilter*)filter
                 configuration:(SCStreamConfiguration*)configuration
                        onStop:(share::StopHandler)onStop {
  self = [super init];
  if (self == nil) return nil;
  _onStop = std::move(onStop);
  _stream = [[SCStream alloc] initWithFilter:filter configuration:configuration delegate:self];
  return self;
}

- (BOOL)takeFramesOnQueue:(const char*)label error:(NSError**)error {
  _queue = dispatch_queue_create(label, DISPATCH_QUEUE_SERIAL);
  return [self.stream addStreamOutput:self
                                 type:SCStreamOutputTypeScreen
                   sampleHandlerQueue:_queue
                                error:error];
}

- (BOOL)beginToRun {
  Phase expected = Phase::starting;
  return _phase.compare_exchange_strong(expected, Phase::running) || expected == Phase::running;
}

- (void)silence {
  _phase = Phase::silent;
}

// Whoever waits for its start is told of a stop by that.
- (void)stopWithReason:(const std::string&)reason {
  if (_phase.exchange(Phase::silent) == Phase::running) _onStop(reason);
}

- (void)stream:(SCStream*)stream didStopWithError:(NSError*)error {
  [self stopWithReason:macos::textOrEmpty(error.description)];
}

- (void)userDidStopStream:(SCStream*)stream {
  [self stopWithReason:"stopped by the user"];
}

// Frames are thrown away.
- (void)stream:(SCStream*)stream
    didOutputSampleBuffer:(CMSampleBufferRef)sampleBuffer
                   ofType:(SCStreamOutputType)type {
}

@end

namespace share {

namespace {

// A request answers with an error, or with nothing when it is done.
using Answer = macos::Completion<bool>;

DriverStream* native(const Stream& stream) { return (__bridge DriverStream*)stream.get(); }

// Throws PlatformError when it has ended: to a request of nothing there would be no answer.
SCStream* requireRunning(DriverStream* shared) {
  SCStream* running = shared.stream;
  if (running == nil) throw platform::PlatformError("the stream has ended");
  return running;
}

SCStreamConfiguration* nativeConfiguration(const StreamConfiguration& configuration) {
  SCStreamConfiguration* native = [[SCStreamConfiguration alloc] init];
  native.width = configuration.width;
  native.height = configuration.height;
  native.minimumFrameInterval = CMTimeMake(configuration.frameIntervalSeconds, 1);
  native.queueDepth = configuration.queueDepth;
  native.showsCursor = NO;
  native.capturesAudio = NO;
  native.streamName = macos::foundationString(configuration.name);
  if (@available(macOS 14.2, *)) native.includeChildWindows = configuration.includesChildWindows;
  return native;
}

std::shared_ptr<Answer> stop(DriverStream* shared, SCStream* running) {
  auto answer = std::make_shared<Answer>();
  [running stopCaptureWithCompletionHandler:^(NSError* error) {
    shared.stream = nil;
    answer->arrive(error == nil, error);
  }];
  return answer;
}

void start(DriverStream* shared) {
  auto answer = std::make_shared<Answer>();
  [shared.stream startCaptureWithCompletionHandler:^(NSError* error) {
    const bool runs = error == nil && [shared beginToRun];
    const bool isAwaited = answer->arrive(runs, error);
    if (error == nil && !isAwaited) {
      stop(shared, shared.stream);
    } else if (!runs) {
      shared.stream = nil;
    }
  }];
  try {
    answer->wait();
  } catch (const platform::PlatformError&) {
    // Nobody will know this stream.
    [shared silence];
    throw;
  }
}

DriverStream* makeStream(SCContentFilter* filter, SCStreamConfiguration* configuration,
                         const std::string& queueLabel, StopHandler onStop) {
  DriverStream* shared = [[DriverStream alloc] initWithFilter:filter
                                                configuration:configuration
                                                       onStop:std::move(onStop)];
  NSError* error = nil;
  if (![shared takeFramesOnQueue:queueLabel.c_str() error:&error]) {
    throw platform::PlatformError(macos::textOrEmpty(error.description));
  }
  return shared;
}

}  // namespace

Stream startStream(const Content& content, const WindowFilter& filter,
                   const StreamConfiguration& configuration, const std::string& queueLabel,
                   StopHandler onStop) {
  macos::connectToWindowServer();
  @autoreleasepool {
    DriverStream* shared =
        makeStream(macos::captureFilter(content, filter), nativeConfiguration(configuration),
                   queueLabel, std::move(onStop));
    start(shared);
    return Stream(macos::shared(macos::Owned<CFTypeRef>((__bridge_retained CFTypeRef)shared)));
  }
}

void updateFilter(const Stream& stream, const Content& content, const WindowFilter& filter) {
  @autoreleasepool {
    SCStream* running = requireRunning(native(stream));
    auto answer = std::make_shared<Answer>();
    [running updateContentFilter:macos::captureFilter(content, filter)
               completionHandler:^(NSError* error) {
                 answer->arrive(error == nil, error);
               }];
    answer->wait();
  }
}

void updateConfiguration(const Stream& stream, const StreamConfiguration& configuration) {
  @autoreleasepool {
    SCStream* running = requireRunning(native(stream));
    auto answer = std::make_shared<Answer>();
    [running updateConfiguration:nativeConfiguration(configuration)
               completionHandler:^(NSError* error) {
                 answer->arrive(error == nil, error);
               }];
    answer->wait();
  }
}

void stopStream(const Stream& stream) {
  @autoreleasepool {
    [native(stream) silence];
    stop(native(stream), requireRunning(native(stream)))->wait();
  }
}

}  // namespace share
