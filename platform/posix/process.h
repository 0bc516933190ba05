#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace posix {

/// The value of an environment variable, read afresh; none when it is unset. Bytes as given.
std::optional<std::string> environment(const char* name);

/// Sends the null signal. True when the system accepted it: the process exists and may be
/// signalled.
bool acceptsNullSignal(std::int32_t pid);

}  // namespace posix
