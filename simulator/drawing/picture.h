#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "simulator/world/world.h"

namespace simulator {

/// A window as it looked at one moment, with all that is drawn of it.
struct WindowPicture {
  Window window;
  std::string owner;
  ApplicationKind kind = ApplicationKind::appKit;
  bool key = false;                  // drawn as the window that has the user's keyboard
  std::vector<Element> elements;     // of this window, parents before children
  std::map<ElementId, Rect> sights;  // of those that scroll: where they can be seen
  std::set<ElementId> scrollBars;    // elements that are bars of what scrolls
  ElementId focused = 0;
  std::string sharedAs;  // the name of a stream that shares it; empty: the system does not mark it
};

/// A picture to be drawn.
struct Picture {
  std::uint64_t width = 0;               // pixels
  std::uint64_t height = 0;              // pixels
  Rect source;                           // the part of the global space that fills it, in points
  std::optional<double> backgroundGrey;  // absent: the desktop, with the menu bar, is drawn
  std::vector<WindowPicture> windows;    // back to front
  std::optional<Point> pointer;          // drawn when present
  std::string menuBarTitle;              // the front application's name, for the menu bar
  std::vector<std::string> menuTitles;   // behind it; without any, the usual ones are drawn
  std::vector<Rect> displays;            // with the desktop: where there is a display
  std::vector<Cover> covers;             // over all windows, later ones in front
  bool locked = false;                   // the login window is drawn over all of it
  std::string userName;                  // whose it is
  bool marksSharing = false;             // with the menu bar: something is being shared
};

}  // namespace simulator
