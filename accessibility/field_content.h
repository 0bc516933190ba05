#pragma once

#include <string>
#include <vector>

#include "accessibility/snapshot.h"

namespace driver {

/// The field's value; empty when it has none, or shows its own decoration in place of one.
std::string contentOf(Snapshot& field, const std::vector<std::string>& chrome);

/// Whether the field holds just this text, white space aside. A field that cannot be read to the
/// end does not.
bool holdsText(Snapshot& field, const std::string& expected,
               const std::vector<std::string>& chrome);

/// Whether one of the squashed texts is the squashed form of this one.
bool isAmong(const std::string& text, const std::vector<std::string>& squashedTexts);

/// Whether the two texts are the same, white space aside.
bool sameText(const std::string& a, const std::string& b);

}  // namespace driver
