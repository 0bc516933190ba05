#pragma once

#include <cstdint>

#include "platform/share.h"
#include "platform/types.h"

namespace simulator {

/// Why streams end, or cannot be had, in the system's words.
inline constexpr const char* userStopped =
    "Error Domain=com.apple.ScreenCaptureKit.SCStreamErrorDomain Code=-3817 \"The user stopped the "
    "stream\"";
inline constexpr const char* captureDeclined =
    "Error Domain=com.apple.ScreenCaptureKit.SCStreamErrorDomain Code=-3801 \"The user declined "
    "TCCs for application, window, display capture\"";

inline constexpr const char* noSource =
    "Error Domain=com.apple.ScreenCaptureKit.SCStreamErrorDomain Code=-3815 \"Failed to find the "
    "capture source\"";

/// A window that a process shares. The system marks it as long as the process and the stream live.
struct Sharing {
  std::int64_t stream = 0;
  platform::Pid client = 0;
  platform::WindowNumber window = 0;
  platform::Pid owner = 0;  // of the window, which may have gone since
  share::StreamConfiguration configuration;
  std::int64_t since = 0;    // when it began to have frames, in microseconds of virtual time
  std::int64_t earlier = 0;  // frames of the time before
  bool isActive = true;      // it has frames
};

}  // namespace simulator
