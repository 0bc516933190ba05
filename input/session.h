#pragma once

namespace driver {

/// True when input may be delivered: the screen is not locked and the session is on the console.
/// Asked afresh. What the system does not tell counts as usable.
bool sessionUsable();

/// True when the screen is known to be locked, whatever the console. Asked afresh. No command asks
/// it: "session" replies with both values, and input needs `sessionUsable`. It is part of what this
/// guard offers all the same, since the two differ when another user has the console.
bool screenLocked();

}  // namespace driver
