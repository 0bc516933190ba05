#pragma once

#include <string>
#include <string_view>

namespace simulator {

/// Adds a code point in UTF-8. A surrogate is encoded like any other, which is how a world gets a
/// text that is no UTF-8.
void appendCodePoint(std::string& text, char32_t point);

/// The text of these UTF-16 units. A surrogate without its other half becomes U+FFFD.
std::string utf8Of(std::u16string_view units);

/// The units of an event's text, which travel as two bytes each, the low one first.
std::u16string unitsOf(std::string_view bytes);

}  // namespace simulator
