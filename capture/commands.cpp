#include "capture/commands.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "base/numbers.h"
#include "capture/window_capture.h"
#include "input/pointer.h"
#include "main/ending.h"
#include "main/globals.h"
#include "platform/loop.h"
#include "platform/process.h"
#include "platform/share.h"

namespace driver {

namespace {

constexpr std::uint64_t probeSide = 16;  // pixels

/// A scroll amount in whole lines.
std::int32_t scrollAmount(double lines) {
  constexpr double lowest = std::numeric_limits<std::int32_t>::min();
  constexpr double highest = std::numeric_limits<std::int32_t>::max();
  // A fraction beyond either end is cut off; what is not a number fails too.
  if (!(lines > lowest - 1 && lines < highest + 1)) fail("scroll amount is out of range");
  return static_cast<std::int32_t>(lines);
}

}  // namespace

Reply captureReply(const Arguments& arguments) {
  // A file of the repaired name would be another one, and so would one whose name ends early.
  const bool isCut = arguments[3].find('\0') != std::string::npos;
  if (isCut || globals().repairedArgs.contains(3)) fail("cannot write " + arguments[3]);
  try {
    return capture(arguments[2], arguments[3]);
  } catch (const platform::PlatformError& error) {
    return refusal(error.what());
  }
}

Reply captureProbeReply(const Arguments& /*arguments*/) {
  try {
    const share::Content content =
        share::content(share::DesktopWindows::excluded, share::Shown::onScreen);
    if (content.displays.empty()) fail("no display");
    share::Configuration configuration;
    configuration.width = probeSide;
    configuration.height = probeSide;
    holdBackIfEnding();
    share::screenshot(content, share::DisplayFilter{content.displays.front().id}, configuration);
    return {{"ok", true}};
  } catch (const platform::PlatformError& error) {
    return refusal(error.what());
  }
}

Reply bgClickReply(const Arguments& arguments) {
  const std::string button = arguments.size() > 5 ? arguments[5] : "left";
  if (button != "left" && button != "right") fail("unsupported mouse button");
  const std::int64_t count =
      arguments.size() > 6 ? parseInt64(arguments[6]).value_or(1) : std::int64_t{1};
  const auto send = [&](const workspace::Application& app, const TargetWindow& window,
                        Point point) { return backgroundClick(app, window, point, count, button); };
  return background(arguments[2], pointIn(arguments, 3), send);
}

Reply bgScrollReply(const Arguments& arguments) {
  const auto send = [&](const workspace::Application& app, const TargetWindow& window,
                        Point point) {
    const std::int32_t horizontal = scrollAmount(num(arguments, 5));
    const Scroll scroll{horizontal, scrollAmount(num(arguments, 6))};
    return backgroundMotion(app, window, point, std::nullopt, scroll);
  };
  return background(arguments[2], pointIn(arguments, 3), send);
}

Reply bgMoveReply(const Arguments& arguments) {
  const auto send = [](const workspace::Application& app, const TargetWindow& window, Point point) {
    return backgroundMotion(app, window, point, std::nullopt, std::nullopt);
  };
  return background(arguments[2], pointIn(arguments, 3), send);
}

Reply bgDragReply(const Arguments& arguments) {
  const auto send = [&](const workspace::Application& app, const TargetWindow& window,
                        Point point) {
    return backgroundMotion(app, window, point, pointIn(arguments, 5), std::nullopt);
  };
  return background(arguments[2], pointIn(arguments, 3), send);
}

Reply bgFocusHoldReply(const Arguments& /*arguments*/) {
  return refusal("input focus must be held by a capture session");
}

Reply captureCommand(const CaptureCommand& command, const Arguments& arguments) {
  requireArity(command.form, arguments);
  return command.handler(arguments);
}

void runCaptureGroup(const CaptureCommand& command, const Arguments& arguments) {
  loop::startTask([&command, arguments] {
    emit(captureCommand(command, arguments));
    process::exit(0);
  });
  loop::park();
}

}  // namespace driver
