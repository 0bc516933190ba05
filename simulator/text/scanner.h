#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

/// One piece of a line.
struct Token {
  enum class Kind {
    word,       // a bare word
    text,       // a quoted text, its escapes resolved
    semicolon,  // `;`
  };
  Kind kind = Kind::word;
  std::string text;
};

/// A line that says something.
struct Line {
  std::size_t number = 0;       // from 1, blank lines counted
  std::size_t indentation = 0;  // spaces before the first token
  std::vector<Token> tokens;    // at least one
};

/// The lines of a world's text, without blank ones and comments. Throws WorldError.
std::vector<Line> scanLines(std::string_view text);

}  // namespace simulator
