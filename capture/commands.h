#pragma once

#include <array>

#include "main/arguments.h"
#include "main/replies.h"

namespace driver {

/// The commands of the capture group, which take pictures or post pointer input.
inline constexpr std::array<CommandForm, 7> captureCommands = {{
    {"capture", "<app> <out.png>", 2},
    {"bg-click", "<app> <x> <y> [left|right] [count]", 3},
    {"bg-scroll", "<app> <x> <y> [dx|x2] [dy|y2]", 5},
    {"bg-move", "<app> <x> <y> [dx|x2] [dy|y2]", 3},
    {"bg-drag", "<app> <x> <y> [dx|x2] [dy|y2]", 5},
    {"bg-focus-hold", "<app>"},
    {"capture-probe", "[<app>]"},
}};

/// Runs one command line of the capture group and returns its reply. Fails on wrong arguments.
Reply captureCommand(const Arguments& arguments);

/// Runs such a command line as a run of its own: on a detached task, while the calling flow is
/// parked. Its reply ends the process with status 0, whatever it says.
[[noreturn]] void runCaptureGroup(const Arguments& arguments);

}  // namespace driver
