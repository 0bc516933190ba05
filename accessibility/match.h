#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "accessibility/snapshot.h"
#include "accessibility/walk.h"
#include "platform/ax.h"
#include "platform/types.h"

namespace driver {

/// The control of the application at a global point: the innermost element there, or the first of
/// the elements around it, that can be acted on or edited. None when there is none, or when it is
/// outside the window scope.
std::optional<Snapshot> axActionable(platform::Point point, const ax::Element& application);

/// How an element was found, the best way first.
enum class MatchKind {
  label,           // its label is the wanted one
  containedLabel,  // one of the two labels contains the other
  role,            // it has no label, and is what the wanted label names
  hit,             // it lies at the point
};

/// As replies have it.
const char* wordOf(MatchKind kind);

struct Match {
  Snapshot element;
  MatchKind kind = MatchKind::label;
};

/// In place of a point: none was given.
inline constexpr platform::Point noPoint = {-1, -1};

/// The control in the window scope that the label describes best; of several the one nearest to the
/// point, and none farther from it than `radius` points. Without such a control, or without a
/// label, the one at the point itself.
std::optional<Match> axMatch(const ax::Element& application, const std::string& label,
                             platform::Point near, double radius = 160);

/// A button that has a label.
struct Button {
  ax::Element element;
  std::string label;  // not empty
};

/// The bounds of the search for all buttons in and below an element.
inline constexpr WalkBounds buttonBounds = {20'000, 30};

/// Adds the element that a walk is at to the buttons of that branch, if it is one with a label and
/// in the branch. So the walk that finds a dialog or a document collects its buttons too: a second
/// one might come to another dialog.
void axButtons(const Walk& walk, std::size_t branch, Snapshot& element,
               std::vector<Button>& buttons);

}  // namespace driver
