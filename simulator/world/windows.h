#pragma once

#include <vector>

#include "simulator/world/world.h"

/// The order of the windows, and their coming and going.
namespace simulator {

/// Puts higher layers in front; windows of one layer keep their order.
void sortLayers(World& world);

/// Brings the window, with its sheets or with what it is a sheet of, in front of the others of its
/// layer.
void raiseWindow(World& world, WindowNumber number);

/// Makes the application the front one and brings its windows in front of the others of their
/// layers.
void bringToFront(World& world, Pid pid);

/// Brings the window in front of its application's others of its layer; the application's place
/// among others stays.
void raiseWithin(World& world, WindowNumber number);

/// Lets the application's window with this title come on screen, in front of the application's
/// others, as the one that has its focus; a closed one opens. False when there is none.
bool showWindow(World& world, Application& application, const std::string& title);

/// Minimises a window or brings it back, in front of its application's others.
void setMinimized(World& world, Application& application, WindowNumber number, bool minimized);

/// Hides an application with its windows, or shows those that it took with it.
void setHidden(World& world, Application& application, bool hidden);

/// Opens a sheet in front of a window: a static text and a button labelled OK that closes it.
void openSheet(World& world, Application& application, WindowNumber parent,
               const std::string& text);

/// Closes the window and its sheets, if it is open. A closed sheet leaves its window.
void closeWindow(World& world, WindowNumber number);

/// The window that a reaction of the element is about: its own, or for a menu's item, which is in
/// none, and for no element, the one that has its application's focus; 0 without such a window.
WindowNumber windowMeant(const Application& application, ElementId element);

/// The effect of a reaction: the element's window closes so.
ReactionEffect closeOwnWindow;

/// Windows have come: those on screen go in front of the application's others, in their order, and
/// the last has its focus.
void presentWindows(World& world, Application& application,
                    const std::vector<WindowNumber>& numbers);

/// The frontmost window on screen that contains the point; null when none does.
Window* topmostAt(World& world, Point point);

/// The window that a sheet, or a sheet of a sheet, belongs to; itself for any other.
const Window& rootOf(const World& world, const Window& window);

/// The window's sheet, if one is open.
const Window* sheetOf(const World& world, WindowNumber number);

/// The numbers of the window's open sheets, front to back.
std::vector<WindowNumber> openSheets(const World& world, WindowNumber number);

namespace reactions {

ReactionEffect openWindow;  // the windows that its call says come

}  // namespace reactions

/// The application ends: its windows go, and when it was in front another comes to front.
void quitApplication(World& world, Pid pid);

}  // namespace simulator
