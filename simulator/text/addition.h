#pragma once

#include <vector>

#include "simulator/text/call.h"
#include "simulator/world/world.h"

/// Elements that come while a Mac runs.
namespace simulator {

/// Adds what a call of one of the world's definitions says, as the last children of the element
/// `parent` of the application at this index; gives the ids of the outermost. References to
/// elements are void from then on. Throws WorldError when the call does not fit, or the body says
/// what is not there by now; then nothing has been added.
std::vector<ElementId> addDefined(World& world, std::size_t application, ElementId parent,
                                  const Call& call);

/// Opens the windows that a call says in the application at this index, in front of its others;
/// gives their numbers. Throws WorldError as `addDefined` does, and then nothing has come.
std::vector<WindowNumber> openDefined(World& world, std::size_t application, const Call& call);

/// For `World::adder`: the same for a reaction's call, with the values that it has found.
Added addForReaction(World& world, Pid pid, ElementId parent, const Reaction& reaction);

/// Throws unless the call fits one of the world's definitions. `words` have just read it.
void checkCall(const World& world, const Call& call, const Words& words);

}  // namespace simulator
