#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/world.h"
#include "simulator/world_text_words.h"

/// Lines of windows and of elements.
namespace simulator {

/// An attribute whose value is elements. They are named by label and may come later in the text.
struct LinkDraft {
  std::string attribute;
  std::vector<std::string> labels;
  bool list = false;
};

struct ElementDraft {
  Element element;  // without id, parent, window
  std::optional<Point> position;
  std::optional<Size> size;
  bool focused = false;
  std::vector<LinkDraft> links;
  std::optional<Habits> habits;
  std::vector<std::string> alsoUnder;  // labels of further parents
  std::vector<std::string> choices;    // the titles of its menu's items
  std::int64_t count = 1;              // itself and its copies
  std::optional<bool> open;            // of a menu, when the line says whether it is
};

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
