#include "platform/macos/standins/graphics.h"

#include <CoreMedia/CoreMedia.h>

#include <utility>

#include "platform/macos/standins/objects.h"

namespace standins {

namespace {

struct Colour : Object {
  explicit Colour(std::string name) : Object(Type::colour), name(std::move(name)) {}
  std::string describe() const override { return name; }
  std::string name;
};

}  // namespace

CGColorRef colour(std::string name) {
  return reinterpret_cast<CGColorRef>(entered(new Colour(std::move(name))));
}

std::string text(double number) {
  std::string text = std::to_string(number);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

std::string text(const CGRect& rect) {
  return text(rect.origin.x) + "," + text(rect.origin.y) + "," + text(rect.size.width) + "x" +
         text(rect.size.height);
}

}  // namespace standins

// The adapters never release these: they are no test's.
CGColorRef CGColorCreateGenericGray(CGFloat gray, CGFloat alpha) {
  CGColorRef made = standins::colour("grey " + standins::text(gray) + "/" + standins::text(alpha));
  standins::keepForEver(made);
  return made;
}

CMTime CMTimeMake(int64_t value, int32_t timescale) { return {value, timescale, 1, 0}; }
