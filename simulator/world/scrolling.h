#pragma once

#include <optional>
#include <string>

#include "simulator/world/world.h"

/// Areas that scroll: what is in them moves, and is cut at their edges.
namespace simulator {

/// At the start, or when elements have come, which are those with an id above `latest`: makes areas
/// of those with the habit, with their bars.
void settleScrollAreas(Application& application, ElementId latest = 0);

/// Each element with an id above `latest` learns in which area it scrolls, if there is one.
void settleScrolledBy(Application& application, ElementId latest = 0);

/// What is in areas may have changed its size or its number: none is scrolled further than it has
/// something to show, and its bars say where it is.
void settleScrolling(Application& application);

/// A scroll by lines over an element, those up and to the left above 0. The innermost area around
/// it that has room moves. Gives a sentence for the journal; none when nothing there scrolls.
std::optional<std::string> scrollOver(Application& application, ElementId hit, Point lines);

/// Scrolls all areas around the element as far as it takes to see it. Gives a sentence for the
/// journal.
std::string scrollToVisible(Application& application, ElementId id);

/// Moves the area of a bar to a part of its way, from 0 to 1.
void moveScrollBar(Application& application, ElementId bar, double part);

}  // namespace simulator
