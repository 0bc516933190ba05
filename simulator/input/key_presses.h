#pragma once

#include <cstdint>
#include <string>

#include "simulator/world/world.h"

namespace simulator {

/// A key that goes down.
struct KeyPress {
  std::int64_t code = 0;
  std::uint64_t flags = 0;  // as quartz::Modifier has them
  std::string text;         // that it types, whatever the key; empty: what the user's layout says
};

/// What the journal says of input to an application that hangs. On a Mac it would wait; here it is
/// lost, which is simpler and no kinder.
inline constexpr const char* hangingSentence = "the application hangs";

/// Lets the application take a key that goes down, in its key window: a menu's shortcut, a command
/// to the field that has the keyboard, or text for it. Gives a sentence for the journal.
std::string takeKey(World& world, Application& application, const KeyPress& press);

}  // namespace simulator
