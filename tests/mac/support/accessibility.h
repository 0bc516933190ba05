#pragma once

#include <ApplicationServices/ApplicationServices.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What the probes read of an application's elements. What is got is kept until the probe ends.
namespace probe {

/// A value of an attribute; null when there is none.
CFTypeRef copyAttribute(AXUIElementRef element, CFStringRef attribute);

/// The text that an attribute has; absent when it has none.
std::optional<std::string> textAttribute(AXUIElementRef element, CFStringRef attribute);

/// The elements that an attribute lists, such as `AXWindows` and `AXChildren`.
std::vector<AXUIElementRef> listedElements(AXUIElementRef element, CFStringRef attribute);

/// The first element below this one with that role and, unless it is empty, that text as its title
/// or value; null when there is none.
AXUIElementRef elementBelow(AXUIElementRef element, const std::string& role,
                            const std::string& text = "");

/// The element of the application at a point, y downwards; null when there is none.
AXUIElementRef elementAt(AXUIElementRef application, CGPoint point);

/// The middle of an element, y downwards.
std::optional<CGPoint> middleOf(AXUIElementRef element);

/// The number of the window that the element is or is in; 0 when it is in none.
std::uint32_t windowOf(AXUIElementRef element);

}  // namespace probe
