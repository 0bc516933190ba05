#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/text/draft.h"
#include "simulator/text/words.h"
#include "simulator/world/world.h"

/// Lines of windows and of elements.
namespace simulator {

struct WindowDraft {
  Window window;      // without owner and element
  ElementDraft body;  // what it shows to accessibility
  bool hasElement = true;
  bool closed = false;
};

/// Reads the whole line.
ElementDraft readElement(Words& words);
WindowDraft readWindow(Words& words);

/// Puts the caret behind the last character, when the element takes text and nothing else says
/// where it is.
void placeCaret(Element& element);

}  // namespace simulator
