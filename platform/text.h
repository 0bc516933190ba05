#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Unicode text. Texts are well-formed UTF-8. All of it is local.
namespace text {

/// Lower case, independent of any locale.
std::string lowercase(std::string_view text);

/// True when the two are canonically equivalent: a composed and a decomposed letter are the same.
bool equal(std::string_view a, std::string_view b);

/// The text in its composed canonical form: those of two equivalent texts have equal bytes.
std::string canonical(std::string_view text);

/// The characters in order, as the user perceives them. A carriage return and its line feed are
/// one.
std::vector<std::string> characters(std::string_view text);

/// The first `count` of the characters.
std::string prefix(std::string_view text, std::size_t count);

/// The text without blanks (spaces of any width and tabs, no line breaks) at both ends.
std::string trimmedBlanks(std::string_view text);

/// The pieces between white space of any kind, line breaks included; no piece is empty.
std::vector<std::string> words(std::string_view text);

}  // namespace text
