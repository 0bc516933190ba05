#include "simulator/text/display.h"

#include <limits>

namespace simulator {

namespace {

constexpr std::array<Option<Display>, 3> displayOptions = {{
    {"at",
     [](Words& words, Display& display) {
       const Point origin = words.point("at");
       display.frame.x = origin.x;
       display.frame.y = origin.y;
     }},
    {"scale", [](Words& words,
                 Display& display) { display.scale = words.number("scale", "a number above 0"); }},
    {"mode",
     [](Words& words, Display& display) {
       words.expect("mode", "unreadable");
       display.modeReadable = false;
     }},
}};

}  // namespace

Display readDisplay(Words& words) {
  Display display;
  display.id = static_cast<std::uint32_t>(
      words.integer("display", "a number from 1 on", 1, std::numeric_limits<std::uint32_t>::max()));
  const Size size = words.size("display");
  display.frame.width = size.width;
  display.frame.height = size.height;
  readOptions(words, displayOptions, display);
  const bool drawable = driver::isFinite(display.frame) && driver::area(display.frame) > 0 &&
                        display.scale > 0 && display.scale <= std::numeric_limits<double>::max();
  if (!drawable) words.fail("a display needs a finite place, and a size and scale above 0");
  return display;
}

}  // namespace simulator
