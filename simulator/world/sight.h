#pragma once

#include <optional>
#include <string_view>

#include "simulator/world/world.h"

/// What can be seen of elements in what scrolls.
namespace simulator {

/// The scroll area with this id; null when that element does not scroll.
const ScrollArea* findScrollArea(const Application& application, ElementId id);
ScrollArea* findScrollArea(Application& application, ElementId id);

/// Whether the element is a bar of the area, or of any.
bool isBarOf(const ScrollArea& area, ElementId id);
bool isScrollBar(const Application& application, ElementId id);

/// In which area the children of the element scroll: itself, or the one in which it does; 0: none.
ElementId scrolledWithin(const Application& application, const Element* parent);

/// In which area a child of the element scrolls that has this role: a menu lies over all areas.
ElementId scrolledAs(std::string_view role, const Application& application, const Element* parent);

/// The part of the screen in which the element can be seen; none when nothing around it scrolls. An
/// empty one shows nothing.
std::optional<Rect> sightOf(const Application& application, const Element& element);

/// Whether anything of the element's frame can be seen there; one without a frame counts as seen.
bool isInSight(const Application& application, const Element& element);

/// Whether the point is one at which the element can be seen.
bool isInSightAt(const Application& application, const Element& element, Point point);

/// The element, or what it is in, is out of sight of an area that keeps only what is in sight.
bool isScrolledAway(const Application& application, const Element& element);

}  // namespace simulator
