#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/soak/sketch.h"

namespace soak {

/// The words behind the tool's path.
using CommandLine = std::vector<std::string>;

/// How scripts call an application: by one of its names, or as one that there is not.
std::string address(Random& random, const ApplicationSketch& application);

/// Adds the words of one argument, of a kind as `command_lines.cpp` names it ("application",
/// "point", "label" …), to a command line about the application.
void addArgument(Random& random, std::string_view kind, const MacSketch& mac,
                 const ApplicationSketch& application, CommandLine& words);

}  // namespace soak
