#include "simulator/text/layout.h"

#include <algorithm>
#include <cmath>

#include "simulator/text/nearest.h"

namespace simulator {

namespace {

constexpr const char* aSibling = "'previous', or the label of an element above in the same one";

Layout& layoutOf(ElementDraft& draft) {
  if (!draft.layout) draft.layout.emplace();
  return *draft.layout;
}

double finiteNumber(Words& words, const char* owner) {
  const double number = words.number(owner, "a number");
  if (!std::isfinite(number))
    words.failAtLast(std::string("'") + owner + "' needs a finite number");
  return number;
}

double extentBehind(Words& words, const char* owner) {
  const double number = finiteNumber(words, owner);
  if (number < 0) words.failAtLast(std::string("'") + owner + "' needs a number from 0 on");
  return number;
}

void readNeighbour(Words& words, ElementDraft& draft, const char* owner, Layout::Side side) {
  Layout& layout = layoutOf(draft);
  if (layout.side != Layout::Side::around) words.failAtLast("it is either 'below' or 'right of'");
  layout.side = side;
  if (!words.take("previous")) layout.sibling = words.name(owner, aSibling);
  if (words.take("gap")) layout.gap = finiteNumber(words, "gap");
}

/// The nearest element around with a frame.
Rect frameAround(const Words& words, const Application& application, const Element& element) {
  const Element* around = findElement(application, element.parent);
  while (around != nullptr && !around->frame) around = findElement(application, around->parent);
  if (around == nullptr) words.fail("nothing around it has a place");
  return *around->frame;
}

/// What the element goes by; null when nothing stands before it.
const Element* neighbourOf(const Words& words, const Application& application,
                           const Element& element, const Layout& layout) {
  const Element* parent = findElement(application, element.parent);
  if (layout.side == Layout::Side::around || parent == nullptr) return nullptr;
  std::vector<std::string> labels;
  for (auto id = parent->children.rbegin(); id != parent->children.rend(); ++id) {
    const Element* each = findElement(application, *id);
    if (each == nullptr || each->id == element.id || !each->frame) continue;
    if (!layout.sibling || labelOf(*each) == *layout.sibling) return each;
    labels.push_back(labelOf(*each));
  }
  if (!layout.sibling) return nullptr;
  words.failUnknownName("no element above in the same one is labelled \"" + *layout.sibling + '"',
                        *layout.sibling, labels);
}

Point positionOf(const Rect& area, const Element* neighbour, const Layout& layout) {
  if (layout.position) return *layout.position;
  if (neighbour == nullptr) return {area.x, area.y};
  const Rect& frame = *neighbour->frame;
  if (layout.side == Layout::Side::below) return {frame.x, frame.y + frame.height + layout.gap};
  return {frame.x + frame.width + layout.gap, frame.y};
}

}  // namespace

void readBelow(Words& words, ElementDraft& draft) {
  readNeighbour(words, draft, "below", Layout::Side::below);
}

void readRightOf(Words& words, ElementDraft& draft) {
  readNeighbour(words, draft, "of", Layout::Side::rightOf);
}

void readInside(Words& words, ElementDraft& draft) {
  layoutOf(draft).padding = finiteNumber(words, "inside");
}

void readFill(Words& words, ElementDraft& draft) {
  Layout& layout = layoutOf(draft);
  const bool isWidth = words.take("width");
  const bool isHeight = !isWidth && words.take("height");
  layout.fillsWidth = !isHeight;
  layout.fillsHeight = !isWidth;
}

void readWidth(Words& words, ElementDraft& draft) {
  layoutOf(draft).width = extentBehind(words, "width");
}

void readHeight(Words& words, ElementDraft& draft) {
  layoutOf(draft).height = extentBehind(words, "height");
}

void completeLayout(const Words& words, ElementDraft& draft) {
  if (!draft.layout) return;
  Layout& layout = *draft.layout;
  if (draft.position && layout.side != Layout::Side::around) {
    words.fail("its place is given twice");
  }
  const bool hasWidth = layout.width || layout.fillsWidth;
  const bool hasHeight = layout.height || layout.fillsHeight;
  const bool twice = (layout.width && layout.fillsWidth) || (layout.height && layout.fillsHeight);
  if (twice || (draft.size && (hasWidth || hasHeight))) words.fail("its size is given twice");
  layout.position = draft.position;
  if (!draft.size) return;
  layout.width = draft.size->width;
  layout.height = draft.size->height;
}

Rect frameOf(const Words& words, const Application& application, const Element& element,
             const Layout& layout) {
  Rect area = frameAround(words, application, element);
  area = {area.x + layout.padding, area.y + layout.padding, area.width - 2 * layout.padding,
          area.height - 2 * layout.padding};
  const Element* neighbour = neighbourOf(words, application, element, layout);
  const Point position = positionOf(area, neighbour, layout);
  // What goes by nothing fills what it is in; what goes by another is as large as that one.
  const bool fills = layout.side == Layout::Side::around;
  const auto along = [&](const std::optional<double>& own, bool fillsThis, double left,
                         double Rect::*length) {
    if (own) return *own;
    if (fills || fillsThis) return std::max(0.0, left);
    if (neighbour != nullptr) return (*neighbour->frame).*length;
    words.fail("nothing stands before it: it needs a size of its own");
  };
  return {
      position.x, position.y,
      along(layout.width, layout.fillsWidth, area.x + area.width - position.x, &Rect::width),
      along(layout.height, layout.fillsHeight, area.y + area.height - position.y, &Rect::height)};
}

}  // namespace simulator
