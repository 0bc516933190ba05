#include "simulator/world/sliders.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "simulator/world/elements.h"

namespace simulator {

namespace {

double attributeOf(const Element& element, const char* name, double otherwise) {
  const auto found = element.attributes.find(name);
  return found == element.attributes.end() ? otherwise
                                           : numberOf(found->second).value_or(otherwise);
}

std::string shortNumber(double value) {
  std::string text = std::to_string(value);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

/// Without a step of its own a slider goes a tenth of its way.
double stepOf(const Application& application, const Element& element) {
  const double range =
      attributeOf(element, "AXMaxValue", 1) - attributeOf(element, "AXMinValue", 0);
  return habitsOf(application, element.id).step.value_or(range / 10);
}

}  // namespace

AttributeValue withinLimits(const Element& element, double value) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  const double least = attributeOf(element, "AXMinValue", -infinity);
  const double most = attributeOf(element, "AXMaxValue", infinity);
  // Limits that make no sense limit nothing.
  const double limited = least <= most ? std::clamp(value, least, most) : value;
  const auto held = element.attributes.find("AXValue");
  const bool whole = held != element.attributes.end() &&
                     std::holds_alternative<std::int64_t>(held->second) &&
                     std::nearbyint(limited) == limited && std::abs(limited) < 1e15;
  if (whole) return static_cast<std::int64_t>(limited);
  return limited;
}

std::string moveSlider(const Application& application, Element& element, double direction) {
  const double before = attributeOf(element, "AXValue", 0);
  element.attributes["AXValue"] =
      withinLimits(element, before + direction * stepOf(application, element));
  return "moved " + described(element) + " from " + shortNumber(before) + " to " +
         shortNumber(attributeOf(element, "AXValue", 0));
}

}  // namespace simulator
