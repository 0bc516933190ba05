#pragma once

#include <cstdint>
#include <string>

#include "simulator/mac/mac.h"

/// What becomes of the streams that share windows.
namespace simulator {

/// How many frames the stream has delivered so far. Frames never move time.
std::int64_t framesOf(const Sharing& sharing, Microseconds now);

/// The stream shares that window from now on, and has frames.
void shareInPlace(Sharing& sharing, const Window& window, Microseconds now);

/// What the system makes of streams whose window has closed since.
void noticeClosedWindows(Mac& mac);

/// The system stops all streams that share a window of this application, or all there are when it
/// is 0. Their processes learn why.
void stopSharing(Mac& mac, Pid owner, const std::string& description);

/// The streams of a process end with it.
void forgetSharing(Mac& mac, Pid client);

}  // namespace simulator
