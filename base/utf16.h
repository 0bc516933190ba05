#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace driver {

/// Positions in texts by UTF-16 units, as applications count them. Texts are well-formed UTF-8. A
/// position inside a character counts as its beginning.

/// The text in UTF-16.
std::u16string utf16(std::string_view text);

/// How many UTF-16 units the text takes. One that is ill-formed takes them for every
/// byte that could begin a character.
std::size_t utf16Length(std::string_view text);

/// The byte at which the unit `units` begins; the text's end when it has no more than that.
std::size_t utf16Offset(std::string_view text, std::size_t units);

/// The text with `length` units from `location` on replaced.
std::string utf16Replaced(std::string_view text, std::size_t location, std::size_t length,
                          std::string_view replacement);

/// The last `units` units.
std::string_view utf16Suffix(std::string_view text, std::size_t units);

}  // namespace driver
