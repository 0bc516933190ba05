#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/soak/aims.h"
#include "tests/soak/features.h"

/// What the generator knows of the Mac that it has made, so that what happens there and what the
/// agent asks for have to do with it.
namespace soak {

/// In whole points.
struct Place {
  std::int64_t x = 0;
  std::int64_t y = 0;
  std::int64_t width = 0;
  std::int64_t height = 0;
};

struct ControlSketch {
  std::string role;
  std::string label;
  std::optional<Place> place;
};

struct WindowSketch {
  std::int64_t number = 0;
  std::string title;
  Place place;
};

struct ApplicationSketch {
  std::int64_t pid = 0;
  std::string name;    // empty: none
  std::string bundle;  // empty: none
  std::vector<WindowSketch> windows;
  std::vector<ControlSketch> controls;
  std::vector<std::vector<std::string>> menus;  // paths
  bool hasOpenMenu = false;
};

struct MacSketch {
  Features features;
  const Aim* aim = nullptr;                     // null: none; borrowed for ever
  std::vector<ApplicationSketch> applications;  // at least one
  std::vector<Place> displays;
  std::vector<std::int64_t> processes;
};

struct Point {
  std::int64_t x = 0;
  std::int64_t y = 0;
};

/// A point in the place; at times one at its edge, or just beside it.
Point someWhereIn(Random& random, const Place& place);

/// Where a control, a window or a display is: of the whole Mac, or of one application.
Place anyPlace(Random& random, const MacSketch& mac);
Place placeIn(Random& random, const ApplicationSketch& application);

/// As worlds have them: "X,Y", "at X,Y size WxH", "pid:N".
std::string pointText(std::int64_t x, std::int64_t y);
std::string placeText(const Place& place);
std::string applicationText(const ApplicationSketch& application);

}  // namespace soak
