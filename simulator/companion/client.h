#pragma once

#include <string>
#include <vector>

namespace companion {

/// Sends a command to the Mac that SIMULATED_MAC names and prints what it gives, line by line.
/// Status 0, or 1 after a line of JSON that says what is wrong. Throws Failure when there is no
/// Mac.
int controlCommand(const std::vector<std::string>& words);

/// "stop": tells the Mac to end, and comes back when it has gone.
int stopCommand(const std::vector<std::string>& words);

/// "list": a line for each Mac of this user, or of anybody when root asks.
int listCommand(const std::vector<std::string>& words);

/// "screenshot" and the file that is to hold the picture.
int screenshotCommand(const std::vector<std::string>& words);

}  // namespace companion
