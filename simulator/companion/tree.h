#pragma once

#include <string>
#include <vector>

#include "simulator/world/world.h"

/// The whole truth about applications, whatever accessibility would answer of it.
namespace companion {

/// One line of JSON for the application, for each of its windows, front to back, and for each of
/// its elements, parents first.
std::vector<std::string> treeLines(const simulator::World& world,
                                   const simulator::Application& application);

/// The same for people, indented.
std::vector<std::string> treeText(const simulator::World& world,
                                  const simulator::Application& application);

/// The AXValue of the element with this label, with what the element is, as one line of JSON. A
/// window counts only when no other element has its title for a label. Throws Failure when there is
/// no such element, or more than one.
std::string valueLine(const simulator::Application& application, const std::string& label);

/// The application with this name, or `pid:N`; also one that has quit. Throws Failure.
const simulator::Application& applicationCalled(const simulator::World& world,
                                                const std::string& name);

}  // namespace companion
