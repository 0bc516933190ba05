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
  Window window;       // without owner and element; without number when it is new
  bool isNew = false;  // its number is the next one
  ElementDraft body;   // what it shows to accessibility
  bool hasElement = true;
  bool closed = false;
};

/// Reads the whole line.
ElementDraft readElement(Words& words);
WindowDraft readWindow(Words& words);

/// Marks a part of the element's text, when its line says so, and puts the caret behind it unless
/// the line says where that is.
void placeMarkedText(const Words& words, Application& application, Element& element,
                     const ElementDraft& draft);

/// Puts the caret behind the last character, when the element takes text and nothing else says
/// where it is.
void placeCaret(Element& element);

}  // namespace simulator
