// Dispatch's objects as Objective-C sees them.
#include <dispatch/dispatch.h>

#include "platform/macos/standins/objects.h"
#include "platform/macos/standins/system_thread.h"

@interface StandinSemaphore : NSObject <OS_dispatch_semaphore> {
 @public
  long _value;
}
@end
@implementation StandinSemaphore
@end

@interface StandinQueue : NSObject <OS_dispatch_queue>
@end
@implementation StandinQueue
@end

dispatch_semaphore_t dispatch_semaphore_create(long value) {
  StandinSemaphore* semaphore = [[StandinSemaphore alloc] init];
  semaphore->_value = value;
  return semaphore;
}

extern "C" __attribute__((ns_returns_retained)) dispatch_semaphore_t createSemaphoreForEver(
    long value);
dispatch_semaphore_t createSemaphoreForEver(long value) {
  dispatch_semaphore_t semaphore = dispatch_semaphore_create(value);
  standins::keepForEver((__bridge CFTypeRef)semaphore);
  return semaphore;
}

long dispatch_semaphore_wait(dispatch_semaphore_t semaphore, std::uint64_t timeout) {
  StandinSemaphore* counted = (StandinSemaphore*)semaphore;
  const bool isSignalled = standins::waitForSystem(timeout, [counted] {
    if (counted->_value == 0) return false;
    --counted->_value;
    return true;
  });
  return isSignalled ? 0 : 1;
}

long dispatch_semaphore_signal(dispatch_semaphore_t semaphore) {
  StandinSemaphore* counted = (StandinSemaphore*)semaphore;
  standins::signal([counted] { ++counted->_value; });
  return 0;
}

dispatch_queue_t dispatch_queue_create(const char* label, id attributes) {
  standins::record(std::string("queue ") + label);
  if (attributes != nil) standins::noteMistake("a queue that is not serial");
  return [[StandinQueue alloc] init];
}
