#include "accessibility/inner_text.h"

#include <algorithm>
#include <vector>

#include "platform/text.h"

namespace driver {

namespace {

/// Pushes what a walk with `budget` visits left can still reach, the first child on top.
void pushChildren(std::vector<Snapshot*>& stack, std::vector<Snapshot>& children,
                  std::size_t budget) {
  for (std::size_t i = std::min(children.size(), budget); i > 0; --i) {
    stack.push_back(&children[i - 1]);
  }
}

void append(std::string& joined, const std::string* value) {
  if (value == nullptr || value->empty()) return;
  if (!joined.empty()) joined += ' ';
  joined += *value;
}

}  // namespace

std::string axText(Snapshot& element, const Batch& each, int budget, std::size_t maxLength) {
  std::string joined;
  std::vector<Snapshot*> stack = {&element};
  for (auto left = static_cast<std::size_t>(std::max(budget, 0)); left > 0 && !stack.empty();) {
    Snapshot& visited = *stack.back();
    stack.pop_back();
    --left;
    visited.read(each);
    if (visited.role() == "AXStaticText") append(joined, visited.text(Attribute::value));
    pushChildren(stack, visited.children(), left);
  }
  return text::prefix(joined, maxLength);
}

}  // namespace driver
