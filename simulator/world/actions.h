#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/world/world.h"

/// What accessibility, and the workspace, let others do with applications.
namespace simulator {

/// The names of an element's actions; none when there is no such element.
std::optional<std::vector<std::string>> actionNames(const Application& application, ElementId id);

/// What came of an action.
struct Performed {
  ax::Error error = ax::Error::success;  // that is answered
  bool landed = false;                   // it had its effect, whatever is answered
  std::string outcome;                   // why not, or what it did: a sentence for the journal
};

/// Performs an accessibility action.
Performed perform(World& world, Pid pid, ElementId id, const std::string& action);

/// Shows a hidden application's windows again. False when no such application runs.
bool unhide(World& world, Pid pid);

}  // namespace simulator
