#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/mac/mac.h"
#include "simulator/text/happening_arguments.h"
#include "simulator/text/reactions.h"
#include "simulator/text/words.h"
#include "simulator/world/tap_line.h"
#include "simulator/world/world.h"

/// What may happen to a Mac, as one table: what a world can script, what a running Mac can be told,
/// and what a fault lets happen before a call.
namespace simulator {

/// One of the two; the other is null.
struct HappeningEffect {
  void (*act)(Mac& mac, const Happening& happening);

  /// Of the user's input: the events that it consists of, as in user_input.h.
  std::vector<InputEvent> (*input)(World& world, const Happening& happening);
};

/// A row of the table.
struct HappeningKind {
  const char* phrase;  // the words that it begins with
  const HappeningArguments& arguments;
  const char* description;
  HappeningEffect effect;
  const char* notTold;  // why a running Mac cannot be told so; null: it can
};

/// All there are.
std::span<const HappeningKind> happeningKinds();

/// What can be written for it: its phrase and what follows.
std::string formOf(const HappeningKind& kind);

/// A happening of the kind with this phrase, which there must be. What it is about is left open.
Happening happeningCalled(std::string_view phrase);

/// Reads when, and how often, something is to happen.
Scripted readTimes(Words& words, const World& world);

/// Reads a happening up to the end of the line. Applications are those of the world; what an
/// application's reactions name is still to be settled, by `settleReactions`.
Happening readHappening(Words& words, const World& world);

/// The happening as such a line. Applications are written as `writtenName` writes them.
std::string happeningText(const Happening& happening, const World* world = nullptr);

/// Lets something happen that no client asked for; what the user does goes past the taps.
void happen(Mac& mac, const Happening& happening);

}  // namespace simulator
