#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/world/world.h"

namespace simulator {

/// An attribute whose value is elements. They are named by label and may come later in the text.
struct LinkDraft {
  std::string attribute;
  std::vector<std::string> labels;
  bool list = false;
};

/// Where an element is, and how large, by what is around it and stands before it.
struct Layout {
  enum class Side { around, below, rightOf };  // `around`: in what it is in
  Side side = Side::around;
  std::optional<std::string> sibling;  // its label; absent: the one before
  double gap = 0;                      // to that one
  double padding = 0;                  // of what it is in
  std::optional<Point> position;       // in place of all that
  std::optional<double> width;
  std::optional<double> height;
  bool fillsWidth = false;
  bool fillsHeight = false;
};

/// An element as its line of a world's text describes it.
struct ElementDraft {
  Element element;   // without id, parent, window
  ElementId id = 0;  // where the line says which; else 0
  std::optional<Point> position;
  std::optional<Size> size;
  std::optional<Layout> layout;
  bool focused = false;
  std::optional<ax::Range> marked;  // marked text in a field
  std::vector<LinkDraft> links;
  std::optional<Habits> habits;
  std::vector<std::string> alsoUnder;  // labels of further parents
  std::vector<std::string> choices;    // the titles of its menu's items
  std::int64_t count = 1;              // itself and its copies
  std::optional<bool> open;            // of a menu, when the line says whether it is
};

}  // namespace simulator
