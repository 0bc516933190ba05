#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/ax.h"
#include "platform/types.h"

/// The only way to applications' elements. A process that let two messages run into the full
/// time-out is sent no more in this run: reads of it are absent, writes and actions answer
/// `cannotComplete`. So a hung application costs seconds, however much there was to ask.
namespace driver::messages {

/// One attribute. `value` is absent unless the read succeeded.
ax::Reading attribute(const ax::Element& element, const char* name);

/// Several attributes in one round trip: one slot for each name, in that order. A slot without a
/// value has the error of its attribute. What is not answered together is read one by one, but for
/// an element that has gone and after a time-out: then each slot has the error of the message.
std::vector<ax::Slot> attributes(const ax::Element& element, const std::vector<const char*>& names);

/// The names of the element's actions; empty when they cannot be read.
std::vector<std::string> actionNames(const ax::Element& element);

/// The innermost element of the application at a global point.
std::optional<ax::Element> elementAt(const ax::Element& application, platform::Point point);

/// Performs an action.
ax::Error perform(const ax::Element& element, const char* action);

/// Writes one attribute.
ax::Error setAttribute(const ax::Element& element, const char* name, const ax::Value& value);

/// The window-server number of a window element; none when it has none or no route tells it.
std::optional<platform::WindowNumber> windowNumber(const ax::Element& element);

}  // namespace driver::messages
