#include "accessibility/walk.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace driver {

Walk::Walk(std::vector<ax::Element> roots, AttributeSet attributes, WalkBounds bounds,
           Siblings siblings)
    : batch_(attributes | AttributeSet{Attribute::children}), siblings_(siblings), reaches_(1) {
  reaches_.front().left = bounds.elements;
  reaches_.front().deepest = bounds.depth;
  stack_.reserve(roots.size());
  for (ax::Element& root : roots) stack_.push_back({Snapshot(std::move(root)), 0});
}

Snapshot* Walk::next() {
  // Only now, and not when it was visited: its children are given away once the caller is done.
  expand();
  current_.reset();
  while (!hasEnded()) {
    endBranches();
    Entry entry = std::move(stack_.back());
    stack_.pop_back();
    if (!visit(entry.depth)) continue;
    entry.element.read(batch_);
    current_ = std::move(entry);
    return &current_->element;
  }
  return nullptr;
}

Snapshot Walk::take() {
  // Both go on to the children, and what is read of a child belongs to the walk: so the element
  // that is given away keeps references alone.
  std::vector<ax::Element> children;
  children.reserve(current_->element.children().size());
  for (const Snapshot& child : current_->element.children()) children.push_back(child.element());
  expand();
  Snapshot taken = std::move(std::exchange(current_, std::nullopt)->element);
  taken.giveChildren(std::move(children));
  return taken;
}

void Walk::beginBranch(WalkBounds bounds) {
  // The element at which it begins is the first of its visits.
  reaches_.push_back({bounds.elements - 1, current_->depth + bounds.depth, height(), true});
}

bool Walk::hasEnded() const {
  return stack_.empty() ||
         std::all_of(reaches_.begin(), reaches_.end(), [](const Reach& r) { return r.left == 0; });
}

// What a branch visits lies together on top of the stack, above what was there when it began.
void Walk::endBranches() {
  for (auto branch = reaches_.begin() + 1; branch != reaches_.end(); ++branch) {
    if (height() <= branch->height) branch->left = 0;
  }
}

/// Counts the visit of an element at this depth. False when nothing visits it.
bool Walk::visit(int depth) {
  bool visited = false;
  for (Reach& reach : reaches_) {
    reach.visits = reach.left > 0 && depth <= reach.deepest;
    if (reach.visits) --reach.left;
    visited = visited || reach.visits;
  }
  return visited;
}

void Walk::expand() {
  if (!current_) return;
  std::size_t reachable = 0;
  for (const Reach& reach : reaches_) {
    if (reach.visits && current_->depth < reach.deepest) {
      reachable = std::max(reachable, reach.left);
    }
  }
  if (reachable == 0) return;
  std::vector<Snapshot> children = current_->element.takeChildren();
  // Of a million children only those are kept that there is a visit left for.
  const std::size_t count = std::min(children.size(), reachable);
  const int depth = current_->depth + 1;
  const std::size_t height = stack_.size() + count;
  // Doubled as a push would: to reserve just what is needed would copy the stack at each element.
  if (height > stack_.capacity()) stack_.reserve(std::max(height, 2 * stack_.capacity()));
  if (siblings_ == Siblings::lastFirst) {
    for (auto child = children.end() - static_cast<std::ptrdiff_t>(count); child != children.end();
         ++child) {
      stack_.push_back({std::move(*child), depth});
    }
  } else {
    for (std::size_t i = count; i > 0; --i) stack_.push_back({std::move(children[i - 1]), depth});
  }
  dropUnreachable();
}

// Each level may leave as many siblings behind as there are visits left. The stack lies in
// the order of depth: at its bottom is what every reach still goes down to. Only that is sure to be
// visited from its top on, so only of that can it be told how much is too much.
void Walk::dropUnreachable() {
  std::size_t left = 0;
  int deepest = std::numeric_limits<int>::max();
  for (const Reach& reach : reaches_) {
    left += reach.left;
    if (reach.left > 0) deepest = std::min(deepest, reach.deepest);
  }
  const auto end = std::partition_point(stack_.begin(), stack_.end(),
                                        [&](const Entry& entry) { return entry.depth <= deepest; });
  const auto reached = static_cast<std::size_t>(end - stack_.begin());
  // Not each time there is one too many: to move the stack down costs as much as it is high.
  if (reached <= 2 * left) return;
  const std::size_t count = reached - left;
  stack_.erase(stack_.begin(), stack_.begin() + static_cast<std::ptrdiff_t>(count));
  dropped_ += count;
}

}  // namespace driver
