#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/world/world.h"

/// What accessibility, and the workspace, let others do with applications.
namespace simulator {

/// The names of an element's actions; none when there is no such element.
std::optional<std::vector<std::string>> actionNames(const Application& application, ElementId id);

/// Performs an accessibility action. `outcome` says in one sentence what came of it, for the
/// journal.
ax::Error perform(World& world, Pid pid, ElementId id, const std::string& action,
                  std::string& outcome);

/// Shows a hidden application's windows again. False when no such application runs.
bool unhide(World& world, Pid pid);

}  // namespace simulator
