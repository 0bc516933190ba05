#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/types.h"

namespace testing_support {

/// A window in the reply of "capture".
struct CapturedWindow {
  std::string title;
  platform::Rect frame;
  std::int64_t layer = 0;
  std::string owner = "Notes";
  std::string bundle = "com.example.notes";
};

/// The reply of a "capture" that wrote a picture.
struct Captured {
  platform::Rect rect;
  platform::WindowNumber anchor = 0;
  platform::Rect anchorFrame;
  std::vector<CapturedWindow> windows;
  std::vector<std::string> otherDisplayWindows = {};
  std::string name = "Notes";
  bool active = false;
};

/// The whole of what a caller sees of such a run, as `seen` gives it.
std::string success(const Captured& captured);

}  // namespace testing_support
