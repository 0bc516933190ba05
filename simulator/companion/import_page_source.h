#pragma once

#include <string>
#include <vector>

#include "simulator/companion/imported.h"

namespace companion {

/// What a page source in XML says, as servers write it that are based on XCUITest. Throws Failure,
/// with `name` for the file's.
std::vector<ImportedApplication> importPageSource(const std::string& text, const std::string& name);

}  // namespace companion
