#pragma once

#include <optional>
#include <string>
#include <vector>

#include "accessibility/snapshot.h"
#include "platform/ax.h"

namespace driver {

/// True for an element that takes text: by its role, or because it says so.
bool isTextInput(Snapshot& element);

/// True for a single-line field in a sheet, popover or dialog, whose content nobody misses.
bool isTransientField(Snapshot& field);

/// The application's focused element, if it is in the window scope; else the one text input in the
/// scope that has the focus of its window. None when there are several.
std::optional<Snapshot> axFocused(const ax::Element& application);

/// The text that a field shows.
struct ComposerText {
  std::string text;       // empty unless complete
  bool complete = false;  // whether all of it could be read, within the bounds of such a reading
};

/// Reads the static texts of a field, in reading order, a line each. A field that holds another
/// one, is too large, or does not tell its children is not read to the end. Of each element below
/// it reads `each`, and the value of a static text.
ComposerText axComposerText(Snapshot& field, const Batch& each);

/// The field's own decoration, squashed: its placeholder and its label, where they are not empty. A
/// value that equals one of them is no content.
std::vector<std::string> chromeTexts(Snapshot& field);

/// The field's value; empty when it has none, or shows its own decoration in place of one.
std::string contentOf(Snapshot& field, const std::vector<std::string>& chrome);

/// Whether the field, which shows `shown`, holds just this text, white space aside. A field that
/// cannot be read to the end does not.
bool holdsText(Snapshot& field, const ComposerText& shown, const std::string& expected,
               const std::vector<std::string>& chrome);

/// Whether one of the squashed texts is the squashed form of this one.
bool isAmong(const std::string& text, const std::vector<std::string>& squashedTexts);

/// Whether the two texts are the same, white space aside.
bool sameText(const std::string& a, const std::string& b);

}  // namespace driver
