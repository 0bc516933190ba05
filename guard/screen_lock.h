#pragma once

#include "main/arguments.h"

namespace driver {

/// Looks up the login framework's immediate lock. Everything that locking needs is loaded by this;
/// what is missing now stays missing.
void prepareScreenLock();

/// Locks the screen at once, by one call of what `prepareScreenLock` found. True when the system
/// accepted it; false when it did not, or when nothing was found. Allocates nothing.
bool lockScreenNow();

/// "lock-now": replies whether the screen could be locked.
void lockNowCommand(const Arguments& arguments);

/// "lock-serve" and the five other commands that are no more: fails, and says what there is
/// instead.
void removedLockCommand(const Arguments& arguments);

}  // namespace driver
