#include "platform/macos/standins/sharing.h"

#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include <mutex>
#include <set>
#include <utility>

#include "platform/macos/standins/foundation.h"
#include "platform/macos/standins/objects.h"
#include "platform/macos/standins/sharing_state.h"
#include "platform/macos/standins/system_thread.h"
#include "platform/macos/standins/text.h"

using standins::errorSaying;
using standins::plainText;
using standins::record;
using standins::sharing;

namespace {

// Streams that run, borrowed: one lives as long as somebody else holds it.
class RunningStreams {
 public:
  void add(SCStream* stream) {
    const std::lock_guard lock(access_);
    streams_.insert((__bridge void*)stream);
  }
  void remove(SCStream* stream) {
    const std::lock_guard lock(access_);
    streams_.erase((__bridge void*)stream);
  }
  std::set<void*> all() {
    const std::lock_guard lock(access_);
    return streams_;
  }

 private:
  std::mutex access_;
  std::set<void*> streams_;
};

RunningStreams& running() {
  static auto& streams = *new RunningStreams;
  return streams;
}

}  // namespace

@implementation SCScreenshotManager
+ (void)captureImageWithFilter:(SCContentFilter*)contentFilter
                 configuration:(SCStreamConfiguration*)config
             completionHandler:(void (^)(CGImageRef, NSError*))completionHandler {
  record("screenshot of " + plainText(contentFilter.description) + ": " +
         plainText(config.description));
  standins::answerAsTold([completionHandler](const std::string& error, bool hasResult) {
    // Only lent: it goes with the handler's end.
    CGImageRef lent = hasResult ? std::exchange(sharing().screenshot, nullptr) : nullptr;
    completionHandler(lent, errorSaying(error));
    if (lent != nullptr) CFRelease(lent);
  });
}
@end

// What delegates are told by some releases of the system alone.
@protocol StandinUserStop
- (void)userDidStopStream:(SCStream*)stream;
@end

@interface SCStream ()
@property(weak) id<SCStreamDelegate> delegate;
@property(weak) id<SCStreamOutput> output;
@property(weak) id queue;
@end

@implementation SCStream
- (instancetype)initWithFilter:(SCContentFilter*)contentFilter
                 configuration:(SCStreamConfiguration*)streamConfig
                      delegate:(id<SCStreamDelegate>)delegate {
  self = [super init];
  self.delegate = delegate;
  record("stream of " + plainText(contentFilter.description) + ": " +
         plainText(streamConfig.description));
  return self;
}
- (void)dealloc {
  running().remove(self);
}
- (BOOL)addStreamOutput:(id<SCStreamOutput>)output
                   type:(SCStreamOutputType)type
     sampleHandlerQueue:(dispatch_queue_t)sampleHandlerQueue
                  error:(NSError* __autoreleasing*)error {
  if (!sharing().refusal.empty()) {
    if (error != nullptr) *error = errorSaying(sharing().refusal);
    return NO;
  }
  if (type != SCStreamOutputTypeScreen) standins::noteMistake("another output than the screen");
  self.output = output;
  self.queue = sampleHandlerQueue;
  return YES;
}
- (void)updateContentFilter:(SCContentFilter*)contentFilter
          completionHandler:(void (^)(NSError*))completionHandler {
  record("update filter: " + plainText(contentFilter.description));
  [self answer:completionHandler];
}
- (void)updateConfiguration:(SCStreamConfiguration*)streamConfig
          completionHandler:(void (^)(NSError*))completionHandler {
  record("update configuration: " + plainText(streamConfig.description));
  [self answer:completionHandler];
}
- (void)answer:(void (^)(NSError*))completionHandler {
  standins::answerAsTold([completionHandler](const std::string& error, bool) {
    completionHandler(errorSaying(error));
  });
}
- (void)startCaptureWithCompletionHandler:(void (^)(NSError*))completionHandler {
  record("start");
  standins::answerAsTold([self, completionHandler](const std::string& error, bool) {
    const bool hasStopped = sharing().answer.tellsOfStop;
    if (hasStopped) [self.delegate stream:self didStopWithError:errorSaying("stopped")];
    if (error.empty() && !hasStopped) running().add(self);
    completionHandler(errorSaying(error));
    if (hasStopped) [self.delegate stream:self didStopWithError:errorSaying("stopped")];
  });
}
- (void)stopCaptureWithCompletionHandler:(void (^)(NSError*))completionHandler {
  record("stop");
  standins::answerAsTold([self, completionHandler](const std::string& error, bool) {
    if (error.empty()) running().remove(self);
    completionHandler(errorSaying(error));
  });
}
// What runs needs somebody to hand frames to.
- (void)handFrame {
  id<SCStreamOutput> output = self.output;
  if (output == nil || self.queue == nil) standins::noteMistake("a frame for nobody");
  CMSampleBufferRef frame = reinterpret_cast<CMSampleBufferRef>(&running());
  [output stream:self didOutputSampleBuffer:frame ofType:SCStreamOutputTypeScreen];
}
@end

namespace standins {

Sharing& sharing() {
  static auto& sharing = *new Sharing;
  return sharing;
}

void answerAsTold(const std::function<void(const std::string& error, bool hasResult)>& handler) {
  const SystemAnswer answer = sharing().answer;
  if (!answer.nanoseconds) return;
  later(*answer.nanoseconds, [answer, handler] {
    @autoreleasepool {
      handler(answer.error, answer.error.empty() && answer.hasResult);
      if (!answer.secondError.empty()) handler(answer.secondError, false);
    }
  });
}

void setShareable(std::vector<SharedWindow> windows, std::vector<SharedDisplay> displays) {
  sharing().windows = std::move(windows);
  sharing().displays = std::move(displays);
}

void setScreenshot(CGImageRef image) { sharing().screenshot = image; }

void answerRequests(const SystemAnswer& answer) { sharing().answer = answer; }

void refuseOutput(const std::string& error) { sharing().refusal = error; }

void handFrames() {
  @autoreleasepool {
    for (void* each : running().all()) [(__bridge SCStream*)each handFrame];
  }
}

void stopStreams(const std::string& error, StopTold how) {
  for (void* each : running().all()) {
    SCStream* stream = (__bridge SCStream*)each;
    running().remove(stream);
    later(1, [stream, error, how] {
      @autoreleasepool {
        if (how != StopTold::byUser) {
          [stream.delegate stream:stream didStopWithError:errorSaying(error)];
        }
        if (how != StopTold::byError) [(id)stream.delegate userDidStopStream:stream];
      }
    });
  }
}

std::size_t runningStreams() { return running().all().size(); }

void resetSharing() { sharing() = {}; }

}  // namespace standins
