#pragma once

namespace driver {

/// True when input may be delivered: the screen is not locked and the session is on the console.
/// Asked afresh. What the system does not tell counts as usable.
bool sessionUsable();

/// True when the screen is known to be locked, whatever the console. Asked afresh.
bool screenLocked();

}  // namespace driver
