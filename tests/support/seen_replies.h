#pragma once

#include <string>
#include <vector>

namespace testing_support {

/// Keeps what a run wrote, a line each with its command before it, in the file that the environment
/// variable DRIVER_TEST_REPLIES names; each only once in a process. Without it nothing happens.
void keepReplies(const std::vector<std::string>& commandLine, const std::string& output);

}  // namespace testing_support
