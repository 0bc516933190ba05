#pragma once

#include <string>
#include <vector>

namespace companion {

/// Says all that is wrong with worlds, and what in them is hardly meant. The status is 0 when all
/// of them can be read. Throws Failure and UsageError.
int checkCommand(const std::vector<std::string>& words);

}  // namespace companion
