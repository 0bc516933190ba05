#pragma once

#include <string>

#include "simulator/text/words.h"
#include "simulator/world/world.h"

/// What follows the phrase of a reaction.
namespace simulator {

struct ReactionArguments {
  const char* form;  // as help shows it; empty for nothing
  /// `owner` is the phrase's last word, for errors.
  void (*read)(Words& words, const char* owner, Reaction& reaction);
  std::string (*text)(const Reaction& reaction);  // as `read` reads it back
};

/// Reads `Label is [not] VALUE`.
Condition readCondition(Words& words, const char* owner);

/// A span as a line has it.
std::string spanText(const Span& span);

namespace reaction_arguments {

extern const ReactionArguments nothing;
extern const ReactionArguments text;           // `text`
extern const ReactionArguments textAndTarget;  // `text` and `target`
extern const ReactionArguments targetAndText;  // `target` and `text`
extern const ReactionArguments target;         // `target`
extern const ReactionArguments targetOrHeld;   // `target`, or `textOf`: whose value is the label
extern const ReactionArguments ownOrTarget;    // `target`, or none for the element itself
extern const ReactionArguments window;         // `window`
extern const ReactionArguments ownOrWindow;    // `window`, or none for the element's
extern const ReactionArguments place;          // `target`, `placement`, and `other` or `point`
extern const ReactionArguments addition;  // `addition`, `argumentsOf`, `target` and `placement`
extern const ReactionArguments call;      // `addition` and `argumentsOf`
extern const ReactionArguments steps;     // `target` and `number`

}  // namespace reaction_arguments

}  // namespace simulator
