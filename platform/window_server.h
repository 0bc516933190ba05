#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/types.h"

/// The window server: windows, the login session, displays.
namespace windowserver {

/// One window, every field as the server gave it; a field is absent when the entry lacks it or
/// holds another type. Bounds are global points.
struct Window {
  std::optional<std::int64_t> number;
  std::optional<std::int64_t> ownerPid;
  std::optional<std::int64_t> layer;
  std::optional<std::string> name;
  std::optional<double> x;
  std::optional<double> y;
  std::optional<double> width;
  std::optional<double> height;
};

/// The values the platform gives its list options; "all" includes windows that are not on screen.
enum class Windows : std::uint32_t {
  onScreen = 1,  // on-screen windows, desktop elements included
  onScreenWithoutDesktop = 1 | 16,
  allWithoutDesktop = 16,
};

/// The login session's two values; each absent when its key is missing or not a Boolean.
struct Session {
  std::optional<bool> locked;
  std::optional<bool> onConsole;
};

/// A display's current mode: the same width in points and in pixels.
struct DisplayMode {
  std::uint64_t width = 0;
  std::uint64_t pixelWidth = 0;
};

using DisplayId = std::uint32_t;

/// The windows, front to back. None when the server gives no list.
std::optional<std::vector<Window>> windows(Windows which);

/// The description of one window, as a list that may be empty. None when the server gives none.
std::optional<std::vector<Window>> description(platform::WindowNumber number);

/// The login session. None when its dictionary cannot be read.
std::optional<Session> session();

/// None when the mode cannot be read.
std::optional<DisplayMode> displayMode(DisplayId display);

/// The level above all ordinary windows, at which a screen is shielded from view.
std::int64_t shieldingLevel();

/// True when screen capture is already permitted. Never prompts.
bool captureAccess();

}  // namespace windowserver
