#pragma once

#include "platform/ax.h"
#include "platform/wire.h"

namespace simulated {

/// Attribute values as they travel, both ways. Apart from the functions of the seam, which a test
/// may answer itself.
driver::Datum packValue(const ax::Value& value);
ax::Value unpackValue(const driver::Datum& datum);

/// The element that the simulated Mac knows by this reference.
ax::Element makeElement(const platform::ElementReference& reference);

}  // namespace simulated
