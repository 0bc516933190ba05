#pragma once

#include <string>
#include <vector>

#include "simulator/companion/descriptor.h"

namespace companion {

/// What SIMULATED_MAC names. Throws Failure when it names none.
std::string macFromEnvironment();

/// Connects to a Mac. Throws Failure when there is none, or it is not to be had.
Descriptor connectToMac(const std::string& mac);

/// Sends a command to the Mac that SIMULATED_MAC names and prints what it gives, line by line.
/// Status 0, or 1 after a line of JSON that says what is wrong. Throws Failure when there is no
/// Mac.
int controlCommand(const std::vector<std::string>& words);

/// "stop": tells the Mac to end, and comes back when it has gone.
int stopCommand(const std::vector<std::string>& words);

/// "list": a line for each Mac of this user, or of anybody when root asks.
int listCommand(const std::vector<std::string>& words);

/// "screenshot" or "snapshot", and the file that is to hold what the Mac gives.
int fileCommand(const std::vector<std::string>& words);

}  // namespace companion
