#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/text/error.h"

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
  Extent extent = {};  // as it is written, quotation marks included
};

/// A line that says something.
struct Line {
  std::size_t number = 0;       // from 1, blank lines counted
  std::size_t indentation = 0;  // spaces before the first token
  std::vector<Token> tokens;    // at least one, unless it is damaged
  std::shared_ptr<const Trail> trail = {};
  std::optional<Complaint> damage = {};  // why it ends after those tokens
};

/// Where a line stands.
inline Spot spotOf(const Line& line) { return {line.number, line.trail}; }

/// The lines of a world's text, without blank ones and comments, each with this trail.
std::vector<Line> scanDamagedLines(std::string_view text,
                                   const std::shared_ptr<const Trail>& trail = nullptr);

/// The same, where no line may be damaged. Throws WorldError.
std::vector<Line> scanLines(std::string_view text);

}  // namespace simulator
