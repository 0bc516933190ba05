#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "platform/ax.h"
#include "platform/types.h"

namespace driver {

/// The application element of a running application, which is asked to offer its full accessibility
/// tree. Fails when no such application runs.
ax::Element axApp(const std::string& reference);

/// The same for a process that is known to run.
ax::Element axApp(platform::Pid pid);

/// The value of one attribute; absent on any error.
std::optional<ax::Value> axAttr(const ax::Element& element, const char* name);

/// An attribute that is an element.
std::optional<ax::Element> axElement(const ax::Element& element, const char* name);

/// The values of those of the attributes that are texts, in the order of the names. Empty texts
/// count. One round trip.
std::vector<std::string> axTexts(const ax::Element& element, const std::vector<const char*>& names);

/// The value's element, or its elements when it is a list of nothing else.
std::optional<ax::Element> elementIn(const std::optional<ax::Value>& value);
std::vector<ax::Element> elementsIn(const std::optional<ax::Value>& value);

/// Of so many windows, the first ones, it is asked whether they are in the scope, or minimized.
inline constexpr std::size_t windowsAskedMax = 20'000;

/// The application's windows in the window scope, in the application's order.
std::vector<ax::Element> axWindows(const ax::Element& application);

/// Whether a window element belongs to the window scope, judged by the window server's title, or by
/// the element's own when the server does not know the window.
bool axWindowInScope(const ax::Element& window);

/// Whether the element lies in a window of the scope. One that tells no window does not; without a
/// scope nothing is asked.
bool isInWindowScope(const ax::Element& element);

/// The names of the element's actions; empty when they cannot be read.
std::vector<std::string> axActions(const ax::Element& element);

}  // namespace driver
