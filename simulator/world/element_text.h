#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/world/world.h"

/// The texts that elements hold, and what fields make of them.
namespace simulator {

/// Length in UTF-16 units.
std::int64_t utf16Length(std::string_view text);

/// The number of code points in well-formed UTF-8.
std::size_t characterCount(std::string_view text);

/// The element's AXValue when it is a text; else empty. Borrowed.
std::string_view textOf(const Element& element);

/// Makes the text the element's AXValue. In an element that takes text the caret follows, to the
/// end.
void setText(Element& element, std::string text);

/// Removes the last code point, if there is one.
void removeLastCharacter(Element& element);

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
