#pragma once

#include <string>

#include "simulator/text/gathering.h"
#include "simulator/world/world.h"

namespace companion {

/// A world as a command is given it.
struct WorldFile {
  std::string path;  // or "-" for standard input, whose text is in the current directory
  std::string text;

  /// As messages call it.
  std::string name() const { return path == "-" ? "standard input" : path; }

  /// For what it includes.
  simulator::WorldFiles files() const;

  /// The text with all that it includes: what can be read without further files.
  std::string wholeText() const { return simulator::withIncluded(text, files()); }
};

/// Reads a world's text. Throws Failure.
WorldFile readWorldFile(const std::string& path);

/// The world. Throws Failure, which says what is wrong with the text.
simulator::World worldOf(const WorldFile& file);

}  // namespace companion
