#pragma once

#import <Foundation/Foundation.h>
#include <dispatch/dispatch.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <utility>

#include "platform/macos/foundation_text.h"
#include "platform/types.h"

namespace macos {

/// What a completion handler brings, for a caller that waits for it. The handler shares ownership
/// with the caller, so that one called late, after the wait has ended, has somewhere to put it.
template <class Result>
class Completion {
 public:
  /// Called by the handler, on any thread. Without a result there is an error. Only the first call
  /// counts. False when it comes too late: the caller has given up.
  bool arrive(Result result, NSError* error) {
    if (hasArrived_.exchange(true)) return true;
    result_ = std::move(result);
    error_ = error;
    const bool isAwaited = !isSettled_.exchange(true);
    if (isAwaited) dispatch_semaphore_signal(arrived_);
    return isAwaited;
  }

  /// Waits for the handler and takes the result over. Throws PlatformError with the error's
  /// description, and when the handler has not been called in ten seconds.
  Result wait() {
    if (!hasArrivedInTime()) throw platform::PlatformError("the system did not answer in time");
    if (error_ != nil || !result_) throw platform::PlatformError(description());
    return std::move(result_);
  }

 private:
  static constexpr std::int64_t patienceNanoseconds = 10'000'000'000;

  bool hasArrivedInTime() {
    const dispatch_time_t deadline = dispatch_time(DISPATCH_TIME_NOW, patienceNanoseconds);
    if (dispatch_semaphore_wait(arrived_, deadline) == 0) return true;
    if (!isSettled_.exchange(true)) return false;
    // It comes just now.
    dispatch_semaphore_wait(arrived_, DISPATCH_TIME_FOREVER);
    return true;
  }

  std::string description() const {
    return optionalText(error_.description).value_or("the system gave no answer");
  }

  std::atomic<bool> hasArrived_ = false;
  std::atomic<bool> isSettled_ = false;  // by its arrival, or because the caller has given up
  dispatch_semaphore_t arrived_ = dispatch_semaphore_create(0);
  Result result_ = {};
  NSError* error_ = nil;
};

}  // namespace macos
