#pragma once

#include <vector>

#include "simulator/world/world.h"

/// Where elements stand among others, and what moves with them.
namespace simulator {

/// Moves the element and all that is in it, by points. Elements without a frame have none to move.
void shift(Application& application, ElementId id, Point by);

/// The element goes, with all that is in it. Where its parent stacks, those below it move up.
void takeOut(Application& application, ElementId id);

/// Lets an element that is in nothing stand in `parent`, before its child at `index`. Where the
/// parent stacks, it comes to lie there and those below it move down. It is drawn in that order
/// from then on.
void putIn(Application& application, ElementId id, ElementId parent, std::size_t index);

/// Lets the last so many children of `parent` stand before its child at `index`, in their order, as
/// `putIn` does.
void placeLast(Application& application, ElementId parent, std::size_t count, std::size_t index);

/// The elements that have not gone, those in front of others behind them. Borrowed from the
/// application.
std::vector<const Element*> drawingOrder(const Application& application);

namespace reactions {

ReactionEffect remove;  // its target goes, with all that is in it
ReactionEffect move;    // its target goes to another place
ReactionEffect add;     // what its call says comes into its target, or above or below it

}  // namespace reactions

}  // namespace simulator
