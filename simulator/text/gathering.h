#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/text/scanner.h"

/// A world's text with what it includes, and the bodies that it defines.
namespace simulator {

/// Where a world's text is, and how the files that it includes are read.
struct WorldFiles {
  /// Of the world itself; what it includes is named relative to its folder.
  std::string path = {};
  /// What is in a file; none when it cannot be read. Without this nothing can be included.
  std::function<std::optional<std::string>(const std::string& path)> read = {};
};

/// Lines that stand for a `use` of their name.
struct Definition {
  Spot spot;                            // of `define`
  std::vector<std::string> parameters;  // each name once
  std::vector<Line> body;               // at least one
};

struct Definitions {
  std::map<std::string, Definition> byName;
};

/// Takes what is wrong with a line; the reading goes on behind it.
using Complain = std::function<void(const Complaint& complaint)>;

/// The lines of a text in the place of those of the files that it includes, and what they define.
struct WorldLines {
  std::vector<Line> lines;
  std::shared_ptr<const Definitions> definitions;
};
WorldLines gatherLines(std::string_view text, const WorldFiles& files, const Complain& complain);

/// Some editors begin a text with one.
std::string_view withoutByteOrderMark(std::string_view text);

/// The text, with the lines of included files in the place of those that include them. What cannot
/// be read stays as it is.
std::string withIncluded(std::string_view text, const WorldFiles& files);

/// How many lines from the first on belong to it, itself included.
std::size_t lengthOfBlock(std::span<const Line> lines);

/// Throws unless there are lines, and the first is indented the least. `head` is the line that they
/// belong to.
void checkBody(const Line& head, std::span<const Line> body);

/// Letters, digits, `_` and `-`, of which the first is a letter.
bool isParameterName(std::string_view word);

}  // namespace simulator
