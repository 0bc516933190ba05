#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "simulator/drawing/picture.h"

/// What is drawn of windows and elements, and nothing else: pictures are drawn from it and compared
/// by it.
namespace simulator {

/// What an element is drawn as.
enum class Control {
  box,  // a faint frame around what is in it
  button,
  popUpButton,
  checkBox,
  radioButton,
  switchButton,
  textField,
  searchField,
  textArea,
  staticText,
  heading,
  link,
  row,
  list,
  page,  // of a browser
  slider,
  progress,
  image,
  tab,
  disclosure,
  menu,
  menuItem,
  popover,
  scrollBar,
};

/// An element as it is drawn. Texts are borrowed from the element and may be ill-formed.
struct ElementLook {
  Control control = Control::box;
  Rect frame;              // finite, not empty, and not much larger than its window
  std::string_view label;  // at most a few thousand bytes, as is the text
  std::string_view text;
  double level = 0;  // of a slider or a progress bar, 0 to 1; of a switch 0 or 1
  bool enabled = true;
  bool focused = false;
  bool hovered = false;
  bool selected = false;
  ax::Range selection;        // UTF-16 units within `text`; of a focused element only
  std::optional<Rect> sight;  // of what scrolls: nothing of it is drawn outside
};

/// A window as it is drawn. Borrowed from its picture.
struct WindowLook {
  Rect frame;  // finite, not empty, and not much larger than the picture
  std::string_view title;
  bool titleBar = true;
  bool sheet = false;
  bool key = false;
  ApplicationKind kind = ApplicationKind::appKit;
  Point scrolledLines;  // finite
  std::string_view sharedAs;
  std::vector<ElementLook> elements;
};

/// None when nothing of the window is in the picture.
std::optional<WindowLook> lookOf(const Picture& picture, const WindowPicture& window);

/// True for an element that a picture of the window may show.
bool isDrawn(const Element& element, const Rect& window);

}  // namespace simulator
