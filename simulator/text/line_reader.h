#pragma once

#include <vector>

#include "simulator/text/builder.h"
#include "simulator/text/gathering.h"
#include "simulator/text/scanner.h"

namespace simulator {

/// Reads the lines of a world into a builder, each as part of what it belongs to. One that cannot
/// be read is complained of; what can be made of it holds the place of what it meant, so that the
/// lines below it are read too.
class LineReader {
 public:
  /// Borrows both. What is indented the least belongs to `root`.
  LineReader(WorldBuilder& builder, const Complain& complain, const WorldBuilder::Place& root = {})
      : builder_(builder), complain_(complain), root_(root) {}

  /// Gives the place of what the line describes.
  const WorldBuilder::Place& read(const Line& line);

 private:
  struct Level {
    std::size_t indentation;
    WorldBuilder::Place place;
  };

  void unwind(const Line& line);
  WorldBuilder::Place placeOf(const Line& line, const WorldBuilder::Place& parent);
  WorldBuilder::Place placeHeld(const Line& line, const WorldBuilder::Place& parent);

  WorldBuilder& builder_;
  const Complain& complain_;
  WorldBuilder::Place root_;
  std::vector<Level> levels_;
};

}  // namespace simulator
