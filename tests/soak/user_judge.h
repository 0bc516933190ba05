#pragma once

#include <string>

#include "tests/soak/play.h"

namespace soak {

/// What of the user's state is another than it would be without any run: the application in front,
/// the pointer, the clipboard. The user's Mac is played a second time with nobody but the user on
/// it. What a run may change for good reason is left out: see `mayDiffer`.
std::string disturbanceOfUser(const Case& one, const Played& played);

}  // namespace soak
