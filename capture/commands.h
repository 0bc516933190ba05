#pragma once

#include <array>

#include "input/context.h"
#include "main/arguments.h"
#include "main/replies.h"

/// The commands of the capture group, which take pictures or post pointer input. The capture
/// service runs them too, as often as it is asked: so each returns its reply. Each takes a command
/// line of the right length, and fails on other wrong arguments.
namespace driver {

/// "capture": a picture of an application's windows. "capture-probe": whether screens can be
/// captured at all; the picture is discarded.
Reply captureReply(const Arguments& arguments);
Reply captureProbeReply(const Arguments& arguments);

/// "bg-click", "bg-scroll", "bg-move", "bg-drag": pointer input at a point of a window.
Reply bgClickReply(const Arguments& arguments);
Reply bgScrollReply(const Arguments& arguments);
Reply bgMoveReply(const Arguments& arguments);
Reply bgDragReply(const Arguments& arguments);

/// "bg-focus-hold", outside a capture session: is refused.
Reply bgFocusHoldReply(const Arguments& arguments);

/// What a session of the capture service does with a command.
enum class InSession {
  refused,
  shared,      // what a run of its own does
  holdsFocus,  // the session holds the focus of its target; the handler is not run
};

/// One row of the group's part of the table of commands.
struct CaptureCommand {
  CommandForm form;
  Reply (*handler)(const Arguments& arguments);
  ActsOnInput actsOnInput;
  InSession inSession;
};

inline constexpr auto captureCommands = [] {
  using enum ActsOnInput;
  using enum InSession;
  return std::to_array<CaptureCommand>({
      {{"capture", "<app> <out.png>", 2}, captureReply, no, shared},
      {{"bg-click", "<app> <x> <y> [left|right] [count]", 3}, bgClickReply, inBackground, shared},
      {{"bg-scroll", "<app> <x> <y> [dx|x2] [dy|y2]", 5}, bgScrollReply, inBackground, shared},
      {{"bg-move", "<app> <x> <y> [dx|x2] [dy|y2]", 3}, bgMoveReply, inBackground, shared},
      {{"bg-drag", "<app> <x> <y> [dx|x2] [dy|y2]", 5}, bgDragReply, inBackground, shared},
      {{"bg-focus-hold", "<app>"}, bgFocusHoldReply, inBackground, holdsFocus},
      {{"capture-probe", "[<app>]"}, captureProbeReply, no, refused},
  });
}();

/// Runs one command line of the group and returns its reply. Fails on wrong arguments.
Reply captureCommand(const CaptureCommand& command, const Arguments& arguments);

/// Runs such a command line as a run of its own: on a detached task, while the calling flow is
/// parked. Its reply ends the process with status 0, whatever it says. `command` outlives the run.
[[noreturn]] void runCaptureGroup(const CaptureCommand& command, const Arguments& arguments);

}  // namespace driver
