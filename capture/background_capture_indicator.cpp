#include "capture/background_capture_indicator.h"

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "accessibility/messages.h"
#include "base/geometry.h"
#include "capture/choice.h"
#include "input/focus.h"
#include "input/session.h"
#include "input/sky_focus.h"
#include "main/ending.h"
#include "main/globals.h"
#include "main/product.h"
#include "main/replies.h"
#include "main/state_queries.h"
#include "platform/ax.h"
#include "platform/loop.h"
#include "platform/process.h"
#include "platform/workspace.h"

namespace driver {

namespace {

// The frames are thrown away: it is the mark that counts, which costs least with few small ones.
constexpr double longestMarkedSide = 640;  // pixels
constexpr double shortestSide = 2;         // pixels
constexpr std::int64_t frameIntervalSeconds = 1;
constexpr std::int64_t queueDepth = 3;  // frames

// On an older system the very question for child windows ends the process.
constexpr process::Version childWindowsSince{14, 2};

std::uint64_t scaledSide(double side, double scale) {
  return static_cast<std::uint64_t>(std::max(side * scale, shortestSide));
}

constexpr std::int64_t nanosecondsPerMicrosecond = 1'000;
constexpr std::int64_t releaseMicroseconds = 40'000;  // of one held focus: a record's pause

// However much focus is held: the line is what tells the client why its service is gone.
constexpr std::int64_t shortestMicroseconds = 50'000;

/// What is left for the last line, so that the focus that is held can still be given back in time.
std::uint32_t timeForLastLine(std::uint64_t startNanoseconds) {
  const auto spent = static_cast<std::int64_t>(loop::uptimeNanoseconds() - startNanoseconds) /
                     nanosecondsPerMicrosecond;
  const auto releases = static_cast<std::int64_t>(heldFocusCount()) * releaseMicroseconds;
  const std::int64_t left = std::int64_t{endingMicroseconds} - spent - releases;
  return static_cast<std::uint32_t>(std::max(left, shortestMicroseconds));
}

platform::Pid pidOf(const std::string& appID) {
  const std::optional<workspace::Application> app = runningApp(appID);
  if (!app) throw InputFailure("capture target is not running: " + appID);
  return app->pid;
}

void requireUsable(platform::Pid pid) {
  if (!sessionUsable()) throw InputFailure("the Mac is locked or not on console");
  // The workspace hears of an end late; a signal does not tell an id that another has been given.
  if (workspace::terminated(pid) || !process::acceptsNullSignal(pid)) {
    throw InputFailure("capture target has exited");
  }
}

std::optional<platform::WindowNumber> candidateOf(platform::Pid pid) {
  const std::optional<std::int64_t> number = mainWindowNumber(listedWindows(pid));
  if (!number) return std::nullopt;
  if (!std::in_range<platform::WindowNumber>(*number)) fail("window number is out of range");
  return static_cast<platform::WindowNumber>(*number);
}

bool givesFocus(platform::Pid pid, platform::WindowNumber window) {
  const Act act;  // an ending process takes back what is noted, and must not be overtaken
  return Sky::focus(pid, window, true);
}

}  // namespace

share::StreamConfiguration streamConfiguration(const platform::Rect& frame,
                                               process::Version version) {
  const platform::Rect known = isFinite(frame) ? frame : platform::Rect{};
  const double longer = std::max({known.width, known.height, shortestSide});
  const double scale = std::min(longestMarkedSide / longer, 1.0);

  share::StreamConfiguration configuration;
  configuration.width = scaledSide(known.width, scale);
  configuration.height = scaledSide(known.height, scale);
  configuration.frameIntervalSeconds = frameIntervalSeconds;
  configuration.queueDepth = queueDepth;
  configuration.name = sharingName;
  configuration.includesChildWindows = version >= childWindowsSince;
  return configuration;
}

void endWhenSharingStops(const std::string& description) {
  const std::uint64_t start = loop::uptimeNanoseconds();
  beginEnding();
  emitLastWithin({{"ok", false},
                  {"sharing", false},
                  {"error", "native screen sharing stopped: " + description}},
                 timeForLastLine(start));
  process::exit(1);
}

BackgroundCaptureIndicator::BackgroundCaptureIndicator(const std::string& appID)
    : pid_(pidOf(appID)) {}

Reply BackgroundCaptureIndicator::refresh() {
  requireUsable(pid_);
  // By the window server's list, which is quick: what the system can share is asked for only when
  // another window is to be shared.
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
  if (std::exchange(holdsFocus_, false)) releaseInputFocus(pid_);
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
  // Noted before it is given: whatever ends the process from here on finds what to take back.
  const bool wasHeld = noteHeldFocus(pid_, *windowID_, holdsFocus_);
  holdsFocus_ = true;
  const Sky::KeyboardFocus keyboard = Sky::keyboardFocus(pid_);
  const auto keyWindow = keyboard.window ? messages::windowNumber(*keyboard.window) : std::nullopt;
  const bool isInFront = foregroundPID() == pid_;
  // Without an earlier hold the window may be key, but its application has no focus to type with.
  const bool isKey = wasHeld && keyWindow == windowID_ && keyboard.hasElement;
  if (!isInFront && !isKey &&
      !(givesFocus(pid_, *windowID_) && makeKeyInBackground(pid_, *windowID_))) {
    throw InputFailure("background key-window selection failed");
  }
  return {{"ok", true}, {"focusPid", pid_}, {"focusWindow", *windowID_}};
}

}  // namespace driver
