#pragma once

#include <cstdint>
#include <optional>

#include "main/arguments.h"

namespace driver {

/// Looks up the login framework's immediate lock. Everything that locking needs is loaded by this;
/// what is missing now stays missing.
void prepareScreenLock();

/// Locks the screen at once, by one call of what `prepareScreenLock` found. True when the system
/// accepted it; false when it did not, or when nothing was found. Allocates nothing.
bool lockScreenNow();

/// The same for a process that meets a fault of its own, whatever else in it is broken.
void lockScreenInLastAct();

/// From now on a flow of its own stands by to lock, since the system may take its time or never
/// answer.
void standByToLock();

/// Has the screen locked, by the flow that stands by or, when there is none, by this one. Allocates
/// nothing on a real machine.
void beginLocking();

/// Whether the system has accepted the lock that was begun last; waits for that. None when the
/// system has not answered within so many microseconds.
std::optional<bool> lockAcceptedWithin(std::uint32_t microseconds);

/// "lock-now": replies whether the screen could be locked.
void lockNowCommand(const Arguments& arguments);

/// "lock-serve" and the five other commands that are no more: fails, and says what there is
/// instead.
void removedLockCommand(const Arguments& arguments);

}  // namespace driver
