#pragma once

#include <string>

#include "simulator/mac/mac.h"

/// Event records, by which an application is made to hold focus and a window is made key.
namespace simulator {

/// Takes an event record of 248 bytes for a process. A malformed one is accepted like any other,
/// as the platform does, but has no effect, and the journal says so.
void takeRecord(Mac& mac, Pid pid, const std::string& record);

/// What an event record is for, whether or not it is well-formed.
enum class RecordKind { other, givesFocus, takesFocus, firstOfKeyPair, secondOfKeyPair };
RecordKind recordKind(const std::string& record);

/// The window that an event record names; 0 for one that is too short.
WindowNumber recordWindow(const std::string& record);

}  // namespace simulator
