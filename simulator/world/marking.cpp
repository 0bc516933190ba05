#include "simulator/world/marking.h"

#include <algorithm>

#include "simulator/world/element_text.h"
#include "simulator/world/elements.h"

namespace simulator {

std::optional<ax::Range> markedIn(const Application& application, ElementId field) {
  const auto& marked = application.marked;
  const Element* element = findElement(application, field);
  if (!marked || marked->element != field || element == nullptr) return std::nullopt;
  const std::int64_t length = utf16Length(textOf(*element));
  const std::int64_t start = std::min(marked->range.location, length);
  const std::int64_t count = std::min(marked->range.length, length - start);
  return count > 0 ? std::optional(ax::Range{start, count}) : std::nullopt;
}

void commitMarked(Application& application) { application.marked.reset(); }

void makeWayForText(Application& application, Element& field) {
  const auto range = markedIn(application, field.id);
  if (!range) return;
  if (habitsOf(application, field.id).losesMarked) field.attributes["AXSelectedTextRange"] = *range;
  commitMarked(application);
}

}  // namespace simulator
