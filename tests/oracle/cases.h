#pragma once

#include <map>
#include <string>
#include <vector>

#include "simulator/world/world.h"

/// Command lines that are worth trying on a world: with the labels and texts that it has, parts of
/// them, misspelt ones, points inside and outside, and arguments that are missing or wrong.
namespace oracle {

struct Case {
  std::vector<std::string> arguments;
  std::map<std::string, std::string> environment;
};

/// `folder` is one in which pictures may be written.
std::vector<Case> casesOf(const simulator::World& world, const std::string& folder);

/// The case as a person would type it.
std::string described(const Case& each);

}  // namespace oracle
