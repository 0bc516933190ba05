#include "simulator/world/arranging.h"

#include <algorithm>
#include <utility>

#include "simulator/world/elements.h"
#include "simulator/world/sight.h"

namespace simulator {

namespace {

/// The element and what is in it. What stands elsewhere too, as a table's cell does, is in what it
/// stands in first.
std::vector<ElementId> withDescendants(const Application& application, ElementId id) {
  std::vector<ElementId> all{id};
  for (std::size_t i = 0; i < all.size(); ++i) {
    const Element* each = findElement(application, all[i]);
    if (each == nullptr) continue;
    for (const ElementId child : each->children) {
      const Element* below = findElement(application, child);
      if (below != nullptr && below->id == child && below->parent == each->id) all.push_back(child);
    }
  }
  return all;
}

bool stacks(const Application& application, ElementId id) {
  return habitsOf(application, id).stacks;
}

std::optional<Rect> frameOfChild(const Application& application, const Element& parent,
                                 std::size_t index) {
  if (index >= parent.children.size()) return std::nullopt;
  const Element* child = findElement(application, parent.children[index]);
  return child == nullptr ? std::nullopt : child->frame;
}

double bottomOf(const Rect& frame) { return frame.y + frame.height; }

void shiftFrom(Application& application, const Element& parent, std::size_t index, double down) {
  const std::vector<ElementId> children = parent.children;
  for (std::size_t i = index; i < children.size(); ++i) {
    shift(application, children[i], {0, down});
  }
}

/// What lies between two children of a stack.
double gapAt(const Application& application, const Element& parent, std::size_t index) {
  const std::size_t lower = index == 0 || index >= parent.children.size() ? 1 : index;
  const auto before = frameOfChild(application, parent, lower - 1);
  const auto after = frameOfChild(application, parent, lower);
  return before && after ? std::max(after->y - bottomOf(*before), 0.0) : 0;
}

/// A stack that scrolls is as high as what is in it.
void lengthen(Application& application, ElementId stack, double height) {
  Element& element = *findElement(application, stack);
  if (element.scrolledBy == 0 || !element.frame) return;
  element.frame->height = std::max(element.frame->height + height, 0.0);
}

/// Those below a child that goes move up by what there was from it to the next one.
void closeUp(Application& application, const Element& parent, std::size_t index) {
  const auto going = frameOfChild(application, parent, index);
  if (!going) return;
  const auto next = frameOfChild(application, parent, index + 1);
  const double room = next ? next->y - going->y : going->height + gapAt(application, parent, index);
  shiftFrom(application, parent, index + 1, -room);
  lengthen(application, parent.id, -room);
}

/// Makes room for a child in a stack, and says where it comes to lie.
Point makeRoom(Application& application, const Element& parent, std::size_t index, double height) {
  const double gap = gapAt(application, parent, index);
  const auto here = frameOfChild(application, parent, index);
  lengthen(application, parent.id, height + gap);
  if (here) {
    shiftFrom(application, parent, index, height + gap);
    return {here->x, here->y};
  }
  const auto last = index == 0 ? std::nullopt : frameOfChild(application, parent, index - 1);
  if (last) return {last->x, bottomOf(*last) + gap};
  const Rect around = parent.frame.value_or(Rect());
  return {around.x, around.y};
}

std::size_t indexIn(const Element& parent, ElementId child) {
  const auto found = std::find(parent.children.begin(), parent.children.end(), child);
  return static_cast<std::size_t>(found - parent.children.begin());
}

/// Lets its parent know it no more; it has not gone.
void detach(Application& application, ElementId id) {
  Element* parent = findElement(application, findElement(application, id)->parent);
  if (parent == nullptr) return;
  const std::size_t index = indexIn(*parent, id);
  if (index == parent->children.size()) return;
  if (stacks(application, parent->id)) closeUp(application, *parent, index);
  parent->children.erase(parent->children.begin() + static_cast<std::ptrdiff_t>(index));
}

/// What it is in is drawn in the window, and is there when the one around it is.
void joinWindow(Application& application, ElementId id, const Element& parent) {
  for (const ElementId each : withDescendants(application, id)) {
    Element& element = *findElement(application, each);
    element.window = parent.window;
    const Element& around = *findElement(application, element.parent);
    // Bars stay where they are when what is in their area moves.
    element.scrolledBy = isScrollBar(application, each)
                             ? around.scrolledBy
                             : scrolledAs(element.role, application, &around);
    element.dependsOn = element.presence == Presence::always ? around.dependsOn : element.id;
  }
}

}  // namespace

void shift(Application& application, ElementId id, Point by) {
  if (by == Point{}) return;
  for (const ElementId each : withDescendants(application, id)) {
    Element* element = findElement(application, each);
    if (element == nullptr || !element->frame) continue;
    element->frame->x += by.x;
    element->frame->y += by.y;
  }
}

void takeOut(Application& application, ElementId id) {
  if (findElement(application, id) == nullptr) return;
  detach(application, id);
  removeElement(application, id);
}

void putIn(Application& application, ElementId id, ElementId parentId, std::size_t index) {
  Element& parent = *findElement(application, parentId);
  Element& element = *findElement(application, id);
  index = std::min(index, parent.children.size());
  if (stacks(application, parentId) && element.frame) {
    const Point place = makeRoom(application, parent, index, element.frame->height);
    shift(application, id, {place.x - element.frame->x, place.y - element.frame->y});
  }
  parent.children.insert(parent.children.begin() + static_cast<std::ptrdiff_t>(index), id);
  element.parent = parentId;
  joinWindow(application, id, parent);
  application.rearranged = true;
}

void placeLast(Application& application, ElementId parentId, std::size_t count, std::size_t index) {
  auto& children = findElement(application, parentId)->children;
  const std::vector<ElementId> last(children.end() - static_cast<std::ptrdiff_t>(count),
                                    children.end());
  children.resize(children.size() - count);
  for (std::size_t i = 0; i < last.size(); ++i) {
    putIn(application, last[i], parentId, index + i);
  }
}

std::vector<const Element*> drawingOrder(const Application& application) {
  std::vector<const Element*> ordered;
  std::vector<ElementId> stack;
  const auto& elements = application.elements;
  for (auto each = elements.rbegin(); each != elements.rend(); ++each) {
    if (each->parent == 0 && !each->removed) stack.push_back(each->id);
  }
  while (!stack.empty()) {
    const Element* element = findElement(application, stack.back());
    stack.pop_back();
    ordered.push_back(element);
    for (auto id = element->children.rbegin(); id != element->children.rend(); ++id) {
      const Element* child = findElement(application, *id);
      const bool isOwn = child != nullptr && child->id == *id && child->parent == element->id;
      if (isOwn) stack.push_back(*id);
    }
  }
  return ordered;
}

namespace reactions {

namespace {

std::string unlabelled(const std::optional<std::string>& label) {
  return "finds nothing labelled \"" + label.value_or("") + "\"";
}

bool isWithin(const Application& application, const Element& element, ElementId around) {
  const Element* each = &element;
  while (each != nullptr && each->id != around) each = findElement(application, each->parent);
  return each != nullptr;
}

void moveBeside(Application& application, ElementId id, ElementId other, bool below) {
  detach(application, id);
  const Element& parent = *findElement(application, findElement(application, other)->parent);
  putIn(application, id, parent.id, indexIn(parent, other) + (below ? 1 : 0));
}

}  // namespace

std::string remove(const Reacting& with) {
  const std::string& label = with.reaction.target ? *with.reaction.target : with.reaction.text;
  const Element* target = findLabelled(with.application, label);
  if (target == nullptr) return unlabelled(label);
  takeOut(with.application, target->id);
  return "";
}

std::string move(const Reacting& with) {
  Application& application = with.application;
  const Reaction& reaction = with.reaction;
  const Element* target = findLabelled(application, reaction.target.value_or(""));
  if (target == nullptr) return unlabelled(reaction.target);
  if (reaction.placement == Placement::at) {
    if (!target->frame) return "finds no place of " + described(*target);
    const Point from{target->frame->x, target->frame->y};
    shift(application, target->id, {reaction.point.x - from.x, reaction.point.y - from.y});
    return "";
  }
  const Element* other = findLabelled(application, reaction.other.value_or(""));
  if (other == nullptr) return unlabelled(reaction.other);
  if (findElement(application, other->parent) == nullptr)
    return "finds nothing around " + described(*other);
  if (isWithin(application, *other, target->id))
    return "finds " + described(*other) + " in what is moved";
  moveBeside(application, target->id, other->id, reaction.placement == Placement::below);
  return "";
}

std::string add(const Reacting& with) {
  Application& application = with.application;
  const Reaction& reaction = with.reaction;
  const Element* target = findLabelled(application, reaction.target.value_or(""));
  if (target == nullptr) return unlabelled(reaction.target);
  const bool isInside = reaction.placement == Placement::at;
  const Element* parent = isInside ? target : findElement(application, target->parent);
  if (parent == nullptr) return "finds nothing around " + described(*target);
  const ElementId around = parent->id;
  const std::size_t below = reaction.placement == Placement::below ? 1 : 0;
  const std::size_t index =
      isInside ? parent->children.size() : indexIn(*parent, target->id) + below;
  const Added added = with.world.adder(with.world, application.pid, around, reaction);
  if (!added.error.empty()) return "can add nothing: " + added.error;
  placeLast(application, around, added.count, index);
  return "";
}

}  // namespace reactions

}  // namespace simulator
