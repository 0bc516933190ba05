#pragma once

#include "platform/ax.h"
#include "platform/call.h"

namespace simulated {

/// Attribute values as they travel, both ways.
driver::Datum packValue(const ax::Value& value);
ax::Value unpackValue(const driver::Datum& datum);

ax::Element makeElement(const platform::ElementReference& reference);

}  // namespace simulated
