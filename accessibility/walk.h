#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "accessibility/snapshot.h"
#include "platform/ax.h"

namespace driver {

/// How far a walk goes.
struct WalkBounds {
  std::size_t elements = 0;  // that it visits at most
  int depth = 0;             // below its roots, of the deepest elements that it visits
};

/// The bounds of searches for controls, and of searches for texts and documents. A large web page
/// has some ten thousand elements; texts lie deeper in it than controls.
inline constexpr WalkBounds controlBounds = {20'000, 60};
inline constexpr WalkBounds textBounds = {30'000, 80};

/// A walk through elements and all that is below them, on an explicit stack. Each element is read
/// once when it is visited, in one message, its children included. It ends within its bounds on
/// whatever the application shows: elements are not told apart, so one that is met twice is
/// visited twice.
///
/// A branch is a walk of its own, with bounds of its own, from an element of this walk (its trunk)
/// down; what both visit is read once.
class Walk {
 public:
  enum class Siblings { lastFirst, firstFirst };

  /// The last of the roots is visited first, with all below it. Of each element `attributes` are
  /// read, and its children.
  Walk(std::vector<ax::Element> roots, AttributeSet attributes, WalkBounds bounds,
       Siblings siblings = Siblings::lastFirst);

  /// Goes on to the next element. Borrowed until then; null at the end.
  Snapshot* next();

  /// Gives the current element away, to be kept with its children; the walk goes on below it.
  Snapshot take();

  /// How far the current element is below its root.
  int depth() const { return current_->depth; }

  /// What is read of each element.
  const Batch& batch() const { return batch_; }

  /// Begins a branch at the current element, which it visits. Branches are numbered from 0.
  void beginBranch(WalkBounds bounds);

  /// Whether the trunk visits the current element, or that branch does.
  bool inTrunk() const { return reaches_.front().visits; }
  bool inBranch(std::size_t branch) const { return reaches_[branch + 1].visits; }

  /// Ends the trunk: from now on only branches are visited.
  void endTrunk() { reaches_.front().left = 0; }

 private:
  struct Entry {
    Snapshot element;
    int depth = 0;
  };

  /// How far the trunk or a branch still goes.
  struct Reach {
    std::size_t left = 0;    // visits
    int deepest = 0;         // depth below the roots of the walk
    std::size_t height = 0;  // of the stack at its beginning: at this height again it is over
    bool visits = false;     // the current element
  };

  std::size_t height() const { return dropped_ + stack_.size(); }
  bool hasEnded() const;
  void endBranches();
  bool visit(int depth);
  void expand();
  void dropUnreachable();

  Batch batch_;
  Siblings siblings_;
  std::vector<Entry> stack_;
  std::size_t dropped_ = 0;     // from the bottom of the stack
  std::vector<Reach> reaches_;  // the trunk, then the branches
  std::optional<Entry> current_;
};

}  // namespace driver
