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

/// Reads `attribute` with what follows it.
void readAttributeOption(Words& words, std::map<std::string, AttributeValue>& attributes,
                         std::vector<LinkDraft>& links);

/// Reads `failing` with what follows it.
void readFailingOption(Words& words, std::map<std::string, ax::Error>& failing);

/// Reads the whole line.
ElementDraft readElement(Words& words);
WindowDraft readWindow(Words& words);

/// Puts the caret behind the last character, when the element takes text and nothing else says
/// where it is.
void placeCaret(Element& element);

}  // namespace simulator
