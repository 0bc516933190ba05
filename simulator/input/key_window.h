#pragma once

#include "simulator/world/world.h"

/// Which window of an application has its keyboard, and what in it.
namespace simulator {

/// The number of the application's focused window or sheet; 0 when it has none.
WindowNumber keyWindowOf(const Application& application);

/// The sheet on a window, the sheet on that, and so on inwards while there is exactly one; else the
/// window.
WindowNumber innermostSheet(const World& world, WindowNumber number);

/// Gives the application's keyboard to a window of its own. While the window has exactly one sheet
/// the sheet gets it, and so on inwards. In the window it goes to what had it last, else in AppKit
/// to the first field that takes text.
void makeKeyWindow(World& world, Application& application, WindowNumber number);

/// What takes the application's text: its focused element, if that is an enabled field in the key
/// window. Null when nothing does.
Element* keyboardField(const World& world, Application& application);

}  // namespace simulator
