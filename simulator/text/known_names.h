#pragma once

#include <string>
#include <vector>

namespace simulator {

/// What a name in a world's text is the name of.
enum class NameKind { role, subrole, attribute, action };

/// "role".
const char* textOf(NameKind kind);

/// The names that macOS has constants for, in AppKit and HIServices, or that WebKit and Chromium
/// give, and the roles that driver knows besides.
const std::vector<std::string>& knownNames(NameKind kind);

bool isKnown(NameKind kind, const std::string& name);

}  // namespace simulator
