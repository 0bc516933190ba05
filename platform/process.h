#pragma once

#include <optional>
#include <string>

#include "platform/types.h"

/// This process, other processes, and the user it runs for.
namespace process {

/// The value of an environment variable, read afresh; none when it is unset. Bytes as given.
std::optional<std::string> environment(const char* name);

/// Sends the null signal. True when the platform accepted it: the process exists and may be
/// signalled. Negative ids and 0 have the platform's meaning.
bool acceptsNullSignal(platform::Pid pid);

/// Ends the process at once with this exit status. No frame of the caller is unwound on a real
/// machine; callers undo what they must beforehand.
[[noreturn]] void exit(int status);

/// The full name of the user, untrimmed; empty when there is none.
std::string fullUserName();

/// The short (login) name of the user.
std::string loginName();

/// The given name that the platform's person-name parser finds in `fullName`; none when it cannot
/// parse it.
std::optional<std::string> givenName(const std::string& fullName);

}  // namespace process
