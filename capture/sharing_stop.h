#pragma once

#include <string>

namespace driver {

/// Ends the process with status 1, because the system has stopped a sharing: nothing may be
/// operated without its mark. The reason is the last line, if the reader takes it in time.
[[noreturn]] void endWhenSharingStops(const std::string& description);

}  // namespace driver
