#pragma once

#include <string>
#include <vector>

namespace companion {

/// Makes a world of what was seen of applications elsewhere. Throws Failure and UsageError.
int importCommand(const std::vector<std::string>& words);

}  // namespace companion
