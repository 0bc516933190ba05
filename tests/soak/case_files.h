#pragma once

#include <string>

#include "tests/soak/case.h"

namespace soak {

/// The files of a case: its world and its steps.
inline constexpr const char* worldFile = "case.world";
inline constexpr const char* stepsFile = "case.steps";

/// Writes the files into a folder, which is made if need be; what is said of the case stands above
/// its steps. Throws std::runtime_error.
void writeCase(const Case& one, const std::string& folder, const std::string& said);

/// The steps as a script that plays them on `simulated-mac run`.
std::string scriptText(const Case& one);

/// Reads world and steps back. Throws std::runtime_error, or simulator::WorldError.
Case readCaseIn(const std::string& folder);

}  // namespace soak
