#include "capture/background_capture_indicator.h"

#include <cstdint>
#include <limits>
#include <vector>

#include "accessibility/element.h"
#include "accessibility/messages.h"
#include "capture/sharing_choice.h"
#include "capture/sharing_stop.h"
#include "capture/stream_configuration.h"
#include "input/foreground.h"
#include "input/held_focus.h"
#include "input/session.h"
#include "input/sky_focus.h"
#include "main/act.h"
#include "main/globals.h"
#include "main/product.h"
#include "main/state_queries.h"
#include "platform/ax.h"
#include "platform/process.h"
#include "platform/workspace.h"

namespace driver {

namespace {

platform::Pid pidOf(const std::string& appID) {
  const std::optional<workspace::Application> app = runningApp(appID);
  if (!app) throw InputFailure("capture target is not running: " + appID);
  return app->pid;
}

void requireUsable(platform::Pid pid) {
  if (!sessionUsable()) throw InputFailure("the Mac is locked or not on console");
  if (workspace::terminated(pid) || !process::acceptsNullSignal(pid)) {
    throw InputFailure("capture target has exited");
  }
}

std::optional<platform::WindowNumber> candidateOf(platform::Pid pid) {
  const std::optional<std::int64_t> number = mainWindowNumber(windows(pid));
  if (!number) return std::nullopt;
  if (*number < 0 || *number > std::numeric_limits<platform::WindowNumber>::max()) {
    fail("window number is out of range");
  }
  return static_cast<platform::WindowNumber>(*number);
}

/// What has the keyboard of a process.
struct KeyboardState {
  std::optional<platform::WindowNumber> window;
  bool hasElement = false;
};

KeyboardState keyboardOf(platform::Pid pid) {
  const std::vector<ax::Slot> slots =
      messages::attributes(ax::application(pid), {"AXFocusedWindow", "AXFocusedUIElement"});
  KeyboardState state;
  const std::optional<ax::Element> focused = elementIn(slots[0].value);
  if (focused) state.window = messages::windowNumber(*focused);
  state.hasElement = slots[1].value.has_value();
  return state;
}

bool givesFocus(platform::Pid pid, platform::WindowNumber window) {
  const Act act;
  return Sky::focus(pid, window, true);
}

}  // namespace

BackgroundCaptureIndicator::BackgroundCaptureIndicator(const std::string& appID)
    : pid_(pidOf(appID)) {}

Reply BackgroundCaptureIndicator::refresh() {
  requireUsable(pid_);
  const std::optional<platform::WindowNumber> candidate = candidateOf(pid_);
  if (candidate && candidate == windowID_) return sharingReply();
  const share::Content content =
      share::content(share::DesktopWindows::excluded, share::Shown::anywhere);
  const share::Window& window = chosenWindow(content, candidate);
  if (windowID_ != window.number) shareWindow(content, window);
  windowID_ = window.number;
  return sharingReply();
}

const share::Window& BackgroundCaptureIndicator::chosenWindow(
    const share::Content& content, const std::optional<platform::WindowNumber>& candidate) const {
  const share::Window* window = candidate ? sharedWindow(content.windows, *candidate, pid_)
                                          : largestSharedWindow(content.windows, pid_);
  if (window != nullptr) return *window;
  throw InputFailure(candidate ? "capture target window disappeared" : "no scoped window to share");
}

void BackgroundCaptureIndicator::shareWindow(const share::Content& content,
                                             const share::Window& window) {
  const share::WindowFilter filter{window.number};
  const share::StreamConfiguration configuration =
      streamConfiguration(window.frame, process::operatingSystemVersion());
  if (stream_) {
    share::updateFilter(*stream_, content, filter);
    share::updateConfiguration(*stream_, configuration);
    return;
  }
  const std::string queueLabel = std::string(productIdentifier) + ".mac.background-capture";
  stream_ = share::startStream(content, filter, configuration, queueLabel, endWhenSharingStops);
}

Reply BackgroundCaptureIndicator::sharingReply() const {
  return {{"ok", true}, {"sharing", true}, {"windowId", *windowID_}, {"targetPid", pid_}};
}

void BackgroundCaptureIndicator::stop() {
  if (holdsFocus_) releaseInputFocus(pid_);
  holdsFocus_ = false;
  if (!stream_) return;
  try {
    share::stopStream(*stream_);
  } catch (const platform::PlatformError&) {
    // Whether it had stopped already or will not: the session is given up.
  }
  stream_.reset();
}

Reply BackgroundCaptureIndicator::holdFocus() {
  if (!windowID_) throw InputFailure("no shared window for input");
  const bool wasHeld = noteHeldFocus(pid_, *windowID_, holdsFocus_);
  holdsFocus_ = true;
  const KeyboardState keyboard = keyboardOf(pid_);
  const bool isInFront = foregroundPID() == pid_;
  const bool isKey = wasHeld && keyboard.window == windowID_ && keyboard.hasElement;
  if (!isInFront && !isKey && !(givesFocus(pid_, *windowID_) && Sky::makeKey(pid_, *windowID_))) {
    throw InputFailure("background key-window selection failed");
  }
  return {{"ok", true}, {"focusPid", pid_}, {"focusWindow", *windowID_}};
}

}  // namespace driver
