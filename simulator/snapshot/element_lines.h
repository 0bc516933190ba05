#pragma once

#include <string>

#include "simulator/world/world.h"

/// Applications, windows and elements as lines of a world. A line says as much as its words can;
/// what it says otherwise than it is, a `now` line puts right.
namespace simulator {

/// How much lines say.
enum class LineStyle {
  whole,
  least,  // what something is, and which one: nothing in them can keep them from being read
};

/// The line of an application, without a line feed.
std::string applicationLine(const World& world, const Application& application, LineStyle style);

/// The line of a window. `element` is what it shows to accessibility; null: nothing.
std::string windowLine(const World& world, const Application& application, const Window& window,
                       const Element* element, LineStyle style);

std::string elementLine(const Application& application, const Element& element, LineStyle style);

}  // namespace simulator
