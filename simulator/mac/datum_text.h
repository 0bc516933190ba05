#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "base/datum.h"

/// Data that travelled, as people and programs read it in a trace.
namespace simulator {

/// Whether the bytes are a text: well-formed UTF-8 whose only control characters are tabs and line
/// breaks. An event record is none.
bool isReadable(std::string_view bytes);

/// A text that is read, cut to this many bytes at most, between two characters; "…" tells of the
/// rest.
std::string beginningOf(std::string_view text, std::size_t bytesMax);

/// Two hexadecimal digits for each byte, of 256 bytes at most; "…" tells of the rest.
std::string hexOf(std::string_view bytes);

/// Bytes as one line of well-formed UTF-8: line breaks and tabs as `\n`, `\r` and `\t`, other
/// control characters as `\x1b`, what is ill-formed as U+FFFD.
std::string printable(std::string_view bytes);

/// A word as a shell reads it: in single quotes where it needs them.
std::string shellWord(const std::string& word);

/// A datum in one line of well-formed UTF-8: texts in quotes and cut, other bytes as `<0d00ff>`.
std::string datumText(const driver::Datum& datum);

}  // namespace simulator
