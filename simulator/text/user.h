#pragma once

#include <string>

#include "simulator/text/words.h"
#include "simulator/world/world.h"

/// Statements about the user's devices, the pasteboard, and how the system is set up.
namespace simulator {

/// Reads such a statement, its first word too. That word, or null when it is none of them.
const char* readUserStatement(Words& words, World& world);

/// Their first words, for an error.
std::string userStatementWords();

}  // namespace simulator
