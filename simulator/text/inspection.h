#pragma once

#include <vector>

#include "simulator/text/builder.h"
#include "simulator/text/gathering.h"
#include "simulator/text/known_names.h"
#include "simulator/text/scanner.h"

namespace simulator {

/// Warns of what a world's text says and hardly means: names that macOS does not know, frames that
/// reach out of their windows, reactions to a label that stands twice, reactions that follow one
/// with a condition and have none, and nothing in front.
class Inspection {
 public:
  /// Borrows both.
  Inspection(const World& world, const Complain& complain) : world_(world), complain_(complain) {}

  /// A line that has just been read.
  void inspect(const Line& line, const WorldBuilder::Place& place);

  /// All lines have been read. What is missing may be in a line that could not be.
  void finish(bool couldBeRead);

 private:
  struct Placed {
    Spot spot;
    std::size_t application;
    ElementId element;
  };

  void warn(Complaint complaint) const;
  void inspectName(const Line& line, const Token& token, NameKind kind) const;
  void inspectNames(const Line& line) const;
  void inspectConditions(const Line& line) const;
  void inspectFrame(const Line& line, const WorldBuilder::Place& place) const;

  const World& world_;
  const Complain& complain_;
  std::vector<Placed> reacting_;
};

}  // namespace simulator
