#pragma once

#include <cstdint>
#include <string>

#include "simulator/mac.h"

/// What becomes of the streams that share windows.
namespace simulator {

/// Why streams end, in the system's words.
inline constexpr const char* userStopped =
    "Error Domain=com.apple.ScreenCaptureKit.SCStreamErrorDomain Code=-3817 \"The user stopped the "
    "stream\"";
inline constexpr const char* captureDeclined =
    "Error Domain=com.apple.ScreenCaptureKit.SCStreamErrorDomain Code=-3801 \"The user declined "
    "TCCs for application, window, display capture\"";

/// How many frames the stream has delivered so far. Frames never move time.
std::int64_t framesOf(const Sharing& sharing, Microseconds now);

/// The system stops all streams that share a window of this application, or all there are when it
/// is 0. Their processes learn why.
void stopSharing(Mac& mac, Pid owner, const std::string& description);

/// The streams of a process end with it.
void forgetSharing(Mac& mac, Pid client);

}  // namespace simulator
