#pragma once

#include <CoreGraphics/CoreGraphics.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace standins {

struct SharedOwner {
  pid_t pid;
  std::string bundleIdentifier;
  std::string name;
};

struct SharedWindow {
  std::uint32_t number;
  CGRect frame;
  std::optional<std::string> title;
  long layer = 0;
  std::optional<SharedOwner> owner;
};

struct SharedDisplay {
  std::uint32_t id;
  CGRect frame;
};

/// What can be captured.
void setShareable(std::vector<SharedWindow> windows, std::vector<SharedDisplay> displays);

/// The picture that a screenshot gives, taken over; null for none.
void setScreenshot(CGImageRef image);

/// How the system answers a request.
struct SystemAnswer {
  /// When; never for none.
  std::optional<std::uint64_t> nanoseconds = 1;
  /// Without a result when it is not empty.
  std::string error;
  bool hasResult = true;
  /// The handler is called at once again, with this error.
  std::string secondError;
  /// When it answers a start, a stream's delegate is told before and after that it has stopped.
  bool tellsOfStop = false;
};
void answerRequests(const SystemAnswer& answer);

/// Has a stream refuse its output, with this error.
void refuseOutput(const std::string& error);

/// Hands every stream that runs a frame.
void handFrames();

/// How a delegate is told that its stream has stopped: releases differ when the user stops it.
enum class StopTold { byError, byUser, inBothWays };

/// Has the system stop every stream that runs next, with this error, on a thread of its own.
void stopStreams(const std::string& error, StopTold how = StopTold::byError);

/// The streams that the system has started and not stopped.
std::size_t runningStreams();

/// All as at first: nothing can be captured, and every request is answered at once.
void resetSharing();

}  // namespace standins
