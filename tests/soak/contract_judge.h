#pragma once

#include <string>

#include "tests/soak/play.h"

namespace soak {

/// The first line of a run that is not as the contract's schema of its command has it.
std::string lineOutsideOfContract(const Case& one, const Played& played);

/// What the contract calls a line that a step has written; empty when it knows none such.
std::string kindOfReply(const Step& step, const std::string& line);

/// What it calls all that a command may write.
std::vector<std::string> kindsOfReplies(const std::string& command);

}  // namespace soak
