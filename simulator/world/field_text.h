#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "simulator/world/world.h"

/// What fields make of texts.
namespace simulator {

/// The text after the transforms, in order. Letters are those of ASCII, and so is white space;
/// characters are code points.
std::string transformed(std::string text, const std::vector<Transform>& transforms);

/// The first half of the characters, the odd one not among them.
std::string firstHalf(std::string_view text);

/// As many bullets as the text has characters.
std::string bullets(std::string_view text);

/// The lines that are not empty.
std::vector<std::string> filledLines(std::string_view text);

}  // namespace simulator
