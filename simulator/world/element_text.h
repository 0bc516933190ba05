#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/world/world.h"

/// The texts that elements hold, and what fields make of them.
namespace simulator {

/// Whether the byte is in a character rather than at its beginning.
constexpr bool continuesCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

/// Length in UTF-16 units, as ranges have it. The text may be ill-formed, as applications' texts
/// are.
std::int64_t utf16Length(std::string_view text);

/// The number of code points in well-formed UTF-8.
std::size_t characterCount(std::string_view text);

/// The element's attribute when it is a text; else null. Borrowed.
const std::string* textAttribute(const Element& element, const std::string& name);

/// The element's AXValue when it is a text; else empty. Borrowed.
std::string_view textOf(const Element& element);

/// The element's AXValue as a text: a number in the shortest form, a truth as true or false; empty
/// for any other value.
std::string valueText(const Element& element);

/// Makes the text the element's AXValue. In an element that takes text the caret follows, to the
/// end.
void setText(Element& element, std::string text);

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
