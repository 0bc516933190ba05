#include "simulator/world/scrolling.h"

#include <algorithm>
#include <cmath>

#include "simulator/world/arranging.h"
#include "simulator/world/elements.h"
#include "simulator/world/sight.h"

namespace simulator {

namespace {

constexpr double pointsPerLine = 17;
constexpr double barBreadth = 15;

/// How far the area can scroll to the right and down.
Point roomOf(const Application& application, const ScrollArea& area) {
  const Element* element = findElement(application, area.id);
  if (element == nullptr || !element->frame) return {};
  const Rect& sight = *element->frame;
  Point reach{sight.x + sight.width, sight.y + sight.height};
  for (const Element& each : application.elements) {
    if (each.scrolledBy != area.id || each.removed || !each.frame) continue;
    if (!driver::isFinite(*each.frame)) continue;
    reach.x = std::max(reach.x, each.frame->x + each.frame->width + area.offset.x);
    reach.y = std::max(reach.y, each.frame->y + each.frame->height + area.offset.y);
  }
  return {reach.x - sight.x - sight.width, reach.y - sight.y - sight.height};
}

/// Gives how far it went.
Point scrollTo(Application& application, ScrollArea& area, Point wanted) {
  const Point room = roomOf(application, area);
  const Point offset{std::clamp(wanted.x, 0.0, room.x), std::clamp(wanted.y, 0.0, room.y)};
  const Point by{offset.x - area.offset.x, offset.y - area.offset.y};
  area.offset = offset;
  const std::vector<ElementId> children = findElement(application, area.id)->children;
  for (const ElementId child : children) {
    if (!isBarOf(area, child)) shift(application, child, {-by.x, -by.y});
  }
  return by;
}

void showOnBar(Application& application, ElementId bar, double offset, double room) {
  Element* element = findElement(application, bar);
  if (element == nullptr) return;
  element->attributes["AXValue"] = room > 0 ? offset / room : 0.0;
  element->attributes["AXEnabled"] = room > 0;
}

void showOnBars(Application& application, const ScrollArea& area) {
  const Point room = roomOf(application, area);
  showOnBar(application, area.verticalBar, area.offset.y, room.y);
  showOnBar(application, area.horizontalBar, area.offset.x, room.x);
}

ElementId addBar(Application& application, ElementId areaId, bool isVertical) {
  const Element& area = *findElement(application, areaId);
  const Rect& frame = *area.frame;
  const Rect place =
      isVertical ? Rect{frame.x + frame.width - barBreadth, frame.y, barBreadth, frame.height}
                 : Rect{frame.x, frame.y + frame.height - barBreadth, frame.width, barBreadth};
  const ElementId around = area.scrolledBy;
  Element& bar = addElement(application, areaId, area.window, place, "AXScrollBar");
  bar.scrolledBy = around;
  bar.attributes["AXOrientation"] =
      std::string(isVertical ? "AXVerticalOrientation" : "AXHorizontalOrientation");
  bar.attributes["AXValue"] = 0.0;
  const ElementId id = bar.id;
  findElement(application, areaId)
      ->attributes.emplace(isVertical ? "AXVerticalScrollBar" : "AXHorizontalScrollBar",
                           ElementLink{id});
  return id;
}

/// Those around elements come before those within.
void findAreas(Application& application, ElementId latest) {
  for (const Element& element : application.elements) {
    if (element.id <= latest) continue;
    const Habits::Scrolling scrolling = habitsOf(application, element.id).scrolling;
    const bool scrolls =
        scrolling != Habits::Scrolling::none && element.frame && driver::isFinite(*element.frame);
    if (!scrolls) continue;
    application.scrollAreas.push_back(
        {.id = element.id, .isLazy = scrolling == Habits::Scrolling::lazy});
  }
}

std::string numberText(double value) { return std::to_string(std::llround(value)); }

}  // namespace

void settleScrolledBy(Application& application, ElementId latest) {
  if (application.scrollAreas.empty()) return;
  for (Element& element : application.elements) {
    if (element.id <= latest) continue;
    const Element* parent = findElement(application, element.parent);
    element.scrolledBy = scrolledAs(element.role, application, parent);
  }
}

void settleScrollAreas(Application& application, ElementId latest) {
  const std::size_t known = application.scrollAreas.size();
  findAreas(application, latest);
  settleScrolledBy(application, latest);
  for (std::size_t i = known; i < application.scrollAreas.size(); ++i) {
    ScrollArea& area = application.scrollAreas[i];
    if (findElement(application, area.id)->role != "AXScrollArea") continue;
    area.verticalBar = addBar(application, area.id, true);
    if (roomOf(application, area).x > 0) area.horizontalBar = addBar(application, area.id, false);
  }
}

void settleScrolling(Application& application) {
  for (ScrollArea& area : application.scrollAreas) {
    if (findElement(application, area.id) == nullptr) continue;
    scrollTo(application, area, area.offset);
    showOnBars(application, area);
  }
}

std::optional<std::string> scrollOver(Application& application, ElementId hit, Point lines) {
  const Element* each = findElement(application, hit);
  const Element* innermost = nullptr;
  for (; each != nullptr; each = findElement(application, each->parent)) {
    ScrollArea* area = findScrollArea(application, each->id);
    if (area == nullptr) continue;
    if (application.hangs) return "scrolled an application that hangs";
    if (innermost == nullptr) innermost = each;
    const Point wanted{area->offset.x - lines.x * pointsPerLine,
                       area->offset.y - lines.y * pointsPerLine};
    const Point by = scrollTo(application, *area, wanted);
    if (by == Point{}) continue;
    showOnBars(application, *area);
    return "scrolled " + described(*each) + " by " + numberText(by.x) + "," + numberText(by.y);
  }
  if (innermost == nullptr) return std::nullopt;
  return described(*innermost) + " has no room to scroll";
}

std::string scrollToVisible(Application& application, ElementId id) {
  const Element* element = findElement(application, id);
  for (const Element* each = element; each != nullptr;
       each = findElement(application, each->scrolledBy)) {
    ScrollArea* area = findScrollArea(application, each->scrolledBy);
    const Element* around = findElement(application, each->scrolledBy);
    if (area == nullptr || !element->frame) break;
    const Rect& frame = *element->frame;
    const Rect& sight = *around->frame;
    // The beginning counts where not all of it has room.
    const auto along = [](double begin, double length, double from, double size) {
      if (begin < from || length > size) return begin - from;
      return std::max(begin + length - from - size, 0.0);
    };
    const Point by{along(frame.x, frame.width, sight.x, sight.width),
                   along(frame.y, frame.height, sight.y, sight.height)};
    scrollTo(application, *area, {area->offset.x + by.x, area->offset.y + by.y});
    showOnBars(application, *area);
  }
  return "scrolled to " + described(*element);
}

void moveScrollBar(Application& application, ElementId bar, double part) {
  for (ScrollArea& area : application.scrollAreas) {
    if (!isBarOf(area, bar)) continue;
    const Point room = roomOf(application, area);
    const bool isVertical = bar == area.verticalBar;
    scrollTo(
        application, area,
        {isVertical ? area.offset.x : part * room.x, isVertical ? part * room.y : area.offset.y});
    showOnBars(application, area);
  }
}

}  // namespace simulator
