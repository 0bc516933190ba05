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

/// The reaction's text behind the AXValue of its target.
std::string append(World& world, Application& application, Element& element,
                   const Reaction& reaction);

/// The AXValue of its target becomes its text.
std::string set(World& world, Application& application, Element& element, const Reaction& reaction);

/// The element's own AXValue changes between 0 and 1, or false and true.
std::string toggle(World& world, Application& application, Element& element,
                   const Reaction& reaction);

/// The element's own AXValue becomes 1, that of its siblings of the same role 0.
std::string choose(World& world, Application& application, Element& element,
                   const Reaction& reaction);

/// Its target goes, with all that is in it.
std::string remove(World& world, Application& application, Element& element,
                   const Reaction& reaction);

/// A sheet with its text opens on the element's window.
std::string openSheet(World& world, Application& application, Element& element,
                      const Reaction& reaction);

/// Its window comes on screen, in front of the application's others.
std::string showWindow(World& world, Application& application, Element& element,
                       const Reaction& reaction);

/// The element's window is titled with its text from now on.
std::string retitle(World& world, Application& application, Element& element,
                    const Reaction& reaction);

/// The application quits.
std::string quit(World& world, Application& application, Element& element,
                 const Reaction& reaction);

/// The application stops answering.
std::string hang(World& world, Application& application, Element& element,
                 const Reaction& reaction);

/// What has the application's keyboard focus takes the pasteboard's contents.
std::string paste(World& world, Application& application, Element& element,
                  const Reaction& reaction);

}  // namespace reactions

}  // namespace simulator
