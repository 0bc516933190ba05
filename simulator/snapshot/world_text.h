#pragma once

#include <stdexcept>
#include <string>

#include "simulator/world/world.h"

/// A world as text, whatever it has come to.
namespace simulator {

/// A world that no text says.
class UnwritableWorld : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The text of the world of a Mac that has run before (`Resumption`), which reads back as the same:
/// that was tried. Nothing in it belongs to a process that is alive. Throws UnwritableWorld, which
/// says what of it does not read back.
std::string worldText(const World& world);

/// Where two worlds differ, as a path of members; empty: nowhere.
std::string differenceOf(const World& one, const World& other);

}  // namespace simulator
