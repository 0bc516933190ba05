#pragma once

#include <cstddef>

/// The seam's accessibility and text functions answered by hand, from a tree of this program's own:
/// what they take from the free store is not counted, so that only the product's share is.
namespace footprint {

enum class Shape {
  wide,    // all under one window
  deep,    // chains of 50 elements
  bushy,   // eight under each
  fringe,  // all under the last of a chain of as many as searches for controls go down
  stairs,  // ten thousand under the window, as many under the last of these, and so on
};

/// The tree of the only application: so many elements, the window among them. A quarter are buttons
/// and a quarter static texts, each with a label or value of 24 letters; the others are groups.
void setTree(Shape shape, std::size_t elements);

/// How many messages have been answered since `setTree`.
std::size_t messageCount();

}  // namespace footprint
