#pragma once

#include <string>
#include <vector>

namespace companion {

/// The page that shows the record in a folder: one file, which loads nothing. Throws Failure when
/// there is no record, or it cannot be read.
std::string reportOf(const std::string& folder);

/// "report DIR -o FILE": writes that page. Throws Failure and UsageError.
int reportCommand(const std::vector<std::string>& words);

}  // namespace companion
