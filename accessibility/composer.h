#pragma once

#include <string>
#include <vector>

#include "accessibility/snapshot.h"

namespace driver {

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

}  // namespace driver
