#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "base/geometry.h"

namespace driver {

/// The words of a command line: the tool's own path, the command, its arguments.
using Arguments = std::vector<std::string>;

/// How a command is written: one row of what users may type.
struct CommandForm {
  static constexpr std::size_t anyNumber = std::numeric_limits<std::size_t>::max();

  std::string_view name;

  /// What follows the name, as the usage message has it; empty when nothing does.
  std::string_view grammar;

  /// How many arguments may follow the name. Those beyond what a command reads are ignored.
  std::size_t fewest = 0;
  std::size_t most = anyNumber;

  /// The failure for a wrong number of arguments; the usage message when empty.
  std::string_view wrongNumber = {};
};

/// "usage: " with the command's name and grammar.
std::string usage(const CommandForm& form);

/// Fails unless as many arguments follow the command as its form takes. `arguments` has the tool's
/// path and the command.
void requireArity(const CommandForm& form, const Arguments& arguments);

/// The word at `index` as a floating-point number, infinities and NaN included. Fails when there is
/// no such word, or when it is not a number as a whole.
double num(const Arguments& arguments, std::size_t index);

/// The point whose coordinates are the words at `index` and after it. Fails as `num` does.
Point pointIn(const Arguments& arguments, std::size_t index);

}  // namespace driver
