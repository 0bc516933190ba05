#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "simulator/world/world.h"

/// The texts that elements hold.
namespace simulator {

/// Length in UTF-16 units, as ranges have it.
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

}  // namespace simulator
