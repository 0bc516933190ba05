#pragma once

#include <string>

#include "simulator/world/world.h"

/// What is under a point, and what comes of pressing it.
namespace simulator {

/// The innermost element of the window that contains the point; among siblings the later one is on
/// top. 0 when none does.
ElementId elementAt(const Application& application, const Window& window, Point point);

/// The innermost element of the application at a global point: that of its frontmost window there.
/// 0 when there is none.
ElementId elementAtPoint(const World& world, const Application& application, Point point,
                         Microseconds now);

/// Presses an enabled element, by a click or an action: a menu's item is chosen, a button's menu
/// opens or closes, and the reactions run, in order. Gives a sentence for the journal. References
/// to elements are void from then on.
std::string press(World& world, Application& application, ElementId id);

/// Lets a click that landed at a global point of a window have its effect: the element under it
/// gets the keyboard focus when it takes text, and its reactions run, in order. Gives one sentence
/// of what happened, for the journal, for example `pressed AXButton "Send"`. `state` counts the
/// clicks in one place that follow each other: 2 for the second of a double click.
std::string click(World& world, Pid pid, WindowNumber window, Point point, bool right,
                  std::int64_t state = 1);

}  // namespace simulator
