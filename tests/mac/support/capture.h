#pragma once

#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include <cstdint>
#include <string>

namespace probe {

/// A window as ScreenCaptureKit knows it; nil, with a reason, when there is none within ten
/// seconds.
SCWindow* shareableWindow(std::uint32_t number, std::string& reason);

/// The bytes of a picture of the window; empty, with a reason, when there is none within ten
/// seconds.
std::string pictureOf(SCWindow* window, bool withChildWindows, std::string& reason);

}  // namespace probe
