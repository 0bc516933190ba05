#pragma once

#include <string>
#include <vector>

#include "simulator/companion/imported.h"

namespace companion {

/// What replies of `driver windows`, `ax-dump` and `ax-menubar` say, one a line. `windows` comes
/// first, and again for each further application. Throws Failure, with `name` for the file's.
std::vector<ImportedApplication> importReplies(const std::string& text, const std::string& name);

}  // namespace companion
