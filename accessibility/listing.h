#pragma once

#include <cstddef>

#include "base/value.h"
#include "platform/ax.h"

namespace driver {

/// The controls in the window scope that show, as descriptions, `limit` of them at most. One
/// without a label has the text inside it for one; one that is off has "disabled".
Value::List axList(const ax::Element& application, std::size_t limit = 400);

}  // namespace driver
