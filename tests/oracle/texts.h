#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What the reference says of texts. Texts are UTF-8; those of applications are repaired first.
namespace oracle {

/// Well-formed: every maximal piece of something else becomes U+FFFD.
std::string repaired(const std::string& text);

std::string lowered(const std::string& text);

/// The same text: a composed and a decomposed letter are one.
bool same(const std::string& a, const std::string& b);

/// The one in the other, letter for letter.
bool contains(const std::string& whole, const std::string& part);

/// The same for labels, for which a composed and a decomposed letter are one.
bool containsLabel(const std::string& whole, const std::string& part);

/// White space and line breaks collapsed into single spaces.
std::string squashed(const std::string& text);

/// Squashed and lower-cased: for comparing labels.
std::string normalizedLabel(const std::string& text);

/// Without blanks (no line breaks) at both ends.
std::string trimmedBlanks(const std::string& text);

/// The characters as the user sees them.
std::vector<std::string> charactersOf(const std::string& text);
std::string firstCharacters(const std::string& text, std::size_t count);

std::int64_t utf16Length(const std::string& text);

/// The text with UTF-16 units `location` to `location + length` replaced.
std::string withReplaced(const std::string& text, std::int64_t location, std::int64_t length,
                         const std::string& replacement);

/// The last `count` UTF-16 units, or all.
std::string lastUnits(const std::string& text, std::int64_t count);

/// The UTF-16 units, two bytes each, the low one first.
std::string utf16Bytes(const std::string& text);

std::vector<std::string> splitAt(const std::string& text, const std::string& separator);
std::string joined(const std::vector<std::string>& parts, const std::string& separator);

/// The short name of a role: without one "AX" at the front, lower-cased.
std::string roleName(const std::string& role);

/// A whole decimal number with an optional sign, within these limits; none for anything else.
std::optional<std::int64_t> wholeNumber(const std::string& text, std::int64_t least,
                                        std::int64_t most);

/// The number that the whole text is; none for anything else.
std::optional<double> realNumber(const std::string& text);

}  // namespace oracle
