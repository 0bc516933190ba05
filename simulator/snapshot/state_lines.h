#pragma once

#include <string>
#include <vector>

#include "simulator/world/world.h"

/// What belongs to no application, as lines of a world.
namespace simulator {

/// The user, the system and its devices.
std::vector<std::string> stateLines(const World& world);

/// What is still to happen, a line each.
std::vector<std::string> scriptLines(const World& world);

/// The bodies of lines that reactions may add.
std::vector<std::string> definitionLines(const World& world);

}  // namespace simulator
