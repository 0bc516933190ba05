#include "tests/soak/sketch.h"

namespace soak {

std::string pointText(std::int64_t x, std::int64_t y) {
  return std::to_string(x) + "," + std::to_string(y);
}

std::string placeText(const Place& place) {
  return "at " + pointText(place.x, place.y) + " size " + std::to_string(place.width) + "x" +
         std::to_string(place.height);
}

Point someWhereIn(Random& random, const Place& place) {
  const bool atTheEdge = random.oneIn(10);
  if (!atTheEdge && place.width > 1 && place.height > 1) {
    const std::int64_t x = place.x + random.between(1, place.width - 1);
    const std::int64_t y = place.y + random.between(1, place.height - 1);
    return {x, y};
  }
  std::int64_t x = place.x + random.between(-1, 1);
  if (random.oneIn(2)) x += place.width;
  std::int64_t y = place.y + random.between(-1, 1);
  if (random.oneIn(2)) y += place.height;
  return {x, y};
}

Place anyPlace(Random& random, const MacSketch& mac) {
  if (random.oneIn(10)) return random.pick(mac.displays);
  return placeIn(random, random.pick(mac.applications));
}

Place placeIn(Random& random, const ApplicationSketch& application) {
  if (!application.controls.empty() && !random.oneIn(4)) {
    const ControlSketch& control = random.pick(application.controls);
    if (control.place) return *control.place;
  }
  if (!application.windows.empty()) return random.pick(application.windows).place;
  return {100, 100, 300, 200};
}

std::string applicationText(const ApplicationSketch& application) {
  return "pid:" + std::to_string(application.pid);
}

}  // namespace soak
