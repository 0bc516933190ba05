#pragma once

#include <vector>

#include "simulator/world/world.h"

namespace simulator {

/// Runs the element's reactions to a click, in order: all of them, also when one takes away its
/// window; none after the application has quit. Gives what is to be said of them behind a sentence
/// for the journal: `, finds nothing labelled "Log"`.
std::string react(World& world, Application& application, ElementId id, bool right);

/// The same for any of the element's lists of reactions.
std::string reactTo(World& world, Application& application, ElementId id,
                    std::vector<Reaction> Element::*reactions);

/// The effects that reactions have. How they are written in a world is in text/reactions.cpp; one
/// more, closeOwnWindow, is in windows.h.
namespace reactions {

ReactionEffect append;      // its text behind the AXValue of its target
ReactionEffect set;         // the AXValue of its target becomes its text
ReactionEffect toggle;      // the element's own AXValue changes between 0 and 1, or false and true
ReactionEffect choose;      // the element's own AXValue becomes 1, that of its like siblings 0
ReactionEffect remove;      // its target goes, with all that is in it
ReactionEffect openSheet;   // a sheet with its text opens on the element's window
ReactionEffect showWindow;  // its window comes on screen, in front of the application's others
ReactionEffect retitle;     // the element's window is titled with its text from now on
ReactionEffect quit;        // the application quits
ReactionEffect hang;        // the application stops answering
ReactionEffect paste;       // what has the application's keyboard focus takes the pasteboard

}  // namespace reactions

}  // namespace simulator
