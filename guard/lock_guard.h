#pragma once

#include "main/arguments.h"

namespace driver {

/// Covers every screen and watches for the user's return, until something ends it: that, a signal,
/// a request to terminate, the end of standard input or of the application's loop. Whatever it is,
/// the screen is locked first, but for a return while grace lasts. Fails when the system lets
/// nobody watch.
[[noreturn]] void lockGuard();

/// "lock-guard": the same.
void lockGuardCommand(const Arguments& arguments);

}  // namespace driver
