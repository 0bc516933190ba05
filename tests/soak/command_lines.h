#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/soak/arguments.h"
#include "tests/soak/case.h"
#include "tests/soak/sketch.h"

namespace soak {

/// A run of one command that ends by itself, as the features of the Mac let it be: most of its
/// words have to do with the Mac.
Step someRun(Random& random, const MacSketch& mac);

/// The words of such a command on an application, for a session of the capture service.
CommandLine someSharedCommand(Random& random, const MacSketch& mac,
                              const ApplicationSketch& application);

/// The variables of a run.
std::map<std::string, std::string> someEnvironment(Random& random, const MacSketch& mac);

/// The commands that `someRun` makes.
std::vector<std::string_view> namesOfRuns();

}  // namespace soak
