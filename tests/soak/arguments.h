#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/soak/command_lines.h"
#include "tests/soak/sketch.h"

namespace soak {

/// Adds the words of one argument, of a kind as `command_lines.cpp` names it ("application",
/// "point", "label" …), to a command line about the application.
void addArgument(Random& random, std::string_view kind, const MacSketch& mac,
                 const ApplicationSketch& application, CommandLine& words);

}  // namespace soak
