#include "simulator/world/sight.h"

#include <algorithm>

namespace simulator {

namespace {

template <class Areas>
auto* areaIn(Areas& areas, ElementId id) {
  const auto found = std::find_if(areas.begin(), areas.end(),
                                  [&](const ScrollArea& area) { return area.id == id; });
  return found == areas.end() ? nullptr : &*found;
}

}  // namespace

const ScrollArea* findScrollArea(const Application& application, ElementId id) {
  return areaIn(application.scrollAreas, id);
}

ScrollArea* findScrollArea(Application& application, ElementId id) {
  return areaIn(application.scrollAreas, id);
}

bool isBarOf(const ScrollArea& area, ElementId id) {
  return id != 0 && (id == area.verticalBar || id == area.horizontalBar);
}

bool isScrollBar(const Application& application, ElementId id) {
  const auto& areas = application.scrollAreas;
  return std::any_of(areas.begin(), areas.end(),
                     [&](const ScrollArea& area) { return isBarOf(area, id); });
}

ElementId scrolledWithin(const Application& application, const Element* parent) {
  if (parent == nullptr) return 0;
  return findScrollArea(application, parent->id) == nullptr ? parent->scrolledBy : parent->id;
}

ElementId scrolledAs(std::string_view role, const Application& application, const Element* parent) {
  const bool isOver = role == "AXMenu" || (parent != nullptr && parent->role == "AXComboBox");
  return isOver ? 0 : scrolledWithin(application, parent);
}

std::optional<Rect> sightOf(const Application& application, const Element& element) {
  std::optional<Rect> sight;
  const Element* area = findElement(application, element.scrolledBy);
  for (; area != nullptr; area = findElement(application, area->scrolledBy)) {
    const Rect frame = area->frame.value_or(Rect());
    sight = sight ? driver::intersection(*sight, frame).value_or(Rect()) : frame;
  }
  return sight;
}

bool isInSight(const Application& application, const Element& element) {
  if (element.scrolledBy == 0 || !element.frame) return true;
  const auto sight = sightOf(application, element);
  return !sight || driver::intersection(*element.frame, *sight).has_value();
}

bool isInSightAt(const Application& application, const Element& element, Point point) {
  if (element.scrolledBy == 0) return true;
  const auto sight = sightOf(application, element);
  return !sight || driver::contains(*sight, point);
}

bool isScrolledAway(const Application& application, const Element& element) {
  const Element* each = &element;
  while (each != nullptr && each->scrolledBy != 0) {
    const ScrollArea* area = findScrollArea(application, each->scrolledBy);
    if (area != nullptr && area->isLazy && !isInSight(application, *each)) return true;
    each = findElement(application, each->parent);
  }
  return false;
}

}  // namespace simulator
