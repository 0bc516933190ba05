#pragma once

#include <nlohmann/json_fwd.hpp>

#include "simulator/desktop.h"

namespace companion {

/// What is the user's own: it looks the same however an agent works in the background.
nlohmann::json userState(const simulator::Mac& mac);

/// That, and what processes hold in the Mac and what is still to strike them.
nlohmann::json wholeState(const simulator::Desktop& desktop);

}  // namespace companion
