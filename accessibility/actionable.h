#pragma once

#include <optional>

#include "accessibility/snapshot.h"
#include "platform/ax.h"
#include "platform/types.h"

namespace driver {

/// The control of the application at a global point: the innermost element there, or the first of
/// the elements around it, that can be acted on or edited. None when there is none, or when it is
/// outside the window scope.
std::optional<Snapshot> axActionable(platform::Point point, const ax::Element& application);

}  // namespace driver
