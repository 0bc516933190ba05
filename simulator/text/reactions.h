#pragma once

#include <span>
#include <vector>

#include "simulator/text/words.h"
#include "simulator/world/world.h"

namespace simulator {

/// What an element can do when it is clicked: a row of the table of reactions.
struct ReactionKind {
  const char* phrase;       // the words that it begins with
  const char* arguments;    // what follows them; empty for nothing
  const char* description;  // what it does
  /// Reads what follows. `owner` is the phrase's last word, for errors.
  void (*read)(Words& words, const char* owner, Reaction& reaction);
  ReactionEffect* effect;
};

/// All there are.
std::span<const ReactionKind> reactionKinds();

/// Reads reactions between semicolons, up to the end of the line, `press:`, `right:` or
/// `submit:`.
std::vector<Reaction> readReactions(Words& words, const char* owner);

}  // namespace simulator
