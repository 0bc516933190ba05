#pragma once

#include <string>

#include "platform/types.h"

namespace driver {

/// Types a text into a process. Line breaks are soft ones: shift and return. Input is withheld
/// while the session is not usable, which `droppedWhileLocked` records. Fails when the capture
/// service has gone.
void backgroundText(const std::string& text, platform::Pid pid);

}  // namespace driver
