#pragma once

#include <cstdint>
#include <optional>

#include "main/arguments.h"

namespace driver {

/// Looks up the login framework's immediate lock. Everything that locking needs is loaded by this;
/// what is missing now stays missing.
void prepareScreenLock();

/// What locks the screen, as the system calls it. Where several processes are played in one:
/// `entry` is that of the process whose turn it is, from now on. Gives that of before; either may
/// be null.
using LockEntry = std::int32_t (*)();
LockEntry exchangeLockEntry(LockEntry entry);

/// Locks the screen at once, by one call of what `prepareScreenLock` found. True when the system
/// accepted it; false when it did not, or when nothing was found. Allocates nothing.
bool lockScreenNow();

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
