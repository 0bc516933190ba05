#pragma once

#include <cstdint>
#include <optional>

#include "platform/ax.h"
#include "platform/types.h"

namespace driver {

/// The item in an application's menus whose shortcut is this key with these modifier flags, of
/// which command is implied; none when there is none that is enabled, and for a key whose name has
/// several characters. The one in the last menu, if there are several.
std::optional<ax::Element> menuEquivalent(platform::Pid pid, std::uint16_t code,
                                          std::uint64_t flags);

}  // namespace driver
