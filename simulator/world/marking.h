#pragma once

#include <optional>

#include "simulator/world/world.h"

/// Marked text: what an input method, or a dead key, shows in a field and has not committed yet. It
/// is part of the field's text.
namespace simulator {

/// The marked text of the field, by its place in UTF-16 units; none when it has none.
std::optional<ax::Range> markedIn(const Application& application, ElementId field);

/// The text stays, and is marked no more.
void commitMarked(Application& application);

/// Another text is to come into the field: what is marked is committed, or selected where the field
/// loses it, so that the text takes its place.
void makeWayForText(Application& application, Element& field);

}  // namespace simulator
