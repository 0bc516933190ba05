#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/world/elements.h"
#include "simulator/world/world.h"

namespace simulator {

/// Runs the element's reactions to a click, in order: all of them, also when one takes away its
/// window; none after the application has quit. Those that take place later are due then. Gives
/// what is to be said of them behind a sentence for the journal: `, finds nothing labelled "Log"`.
std::string react(World& world, Application& application, ElementId id, bool right);

/// The same for any of the element's lists of reactions.
std::string reactTo(World& world, Application& application, ElementId id,
                    std::vector<Reaction> Element::*reactions);

/// What an application does by itself. Gives what is to be said of it, a sentence for each reaction
/// that has something to say.
std::vector<std::string> reactByItself(World& world, Pid pid,
                                       const std::vector<Reaction>& reactions);

/// A reaction that has been due, and what has come of it.
struct SettledReaction {
  DueReaction due;
  std::optional<ElementName> element;  // whose reaction it was, unless that has gone
  bool landed = false;
  std::string outcome;  // why not, or what it has to say
};

/// Lets the first reaction that is due take place; there must be one.
SettledReaction settleReaction(World& world);

/// A time within the span by chance, or its middle without.
Microseconds timeWithin(std::optional<Random>& chance, const Span& span);

/// The effects that reactions have. How they are written in a world is in text/reactions.cpp;
/// others are in windows.h, arranging.h and panels.h.
namespace reactions {

ReactionEffect append;      // its text behind the AXValue of its target
ReactionEffect set;         // the AXValue of its target becomes its text
ReactionEffect toggle;      // the AXValue of the element, or of its target, changes between 0 and 1
ReactionEffect choose;      // the AXValue of either becomes 1, that of its like siblings 0
ReactionEffect openSheet;   // a sheet with its text opens on the element's window
ReactionEffect showWindow;  // its window comes on screen, in front of the application's others
ReactionEffect retitle;     // the element's window is titled with its text from now on
ReactionEffect quit;        // the application quits
ReactionEffect hang;        // the application stops answering
ReactionEffect paste;       // what has the application's keyboard focus takes the pasteboard
ReactionEffect enable;      // its target can be used
ReactionEffect disable;     // its target cannot
ReactionEffect relabel;     // its text is what its target is called by
ReactionEffect count;       // the number that its target shows changes by its own

}  // namespace reactions

}  // namespace simulator
