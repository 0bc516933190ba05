#pragma once

#include <string>

#include "platform/call.h"
#include "simulator/input/landing.h"
#include "simulator/mac/mac.h"

/// What becomes of event records and posted events: the rules by which windows take background
/// input.
namespace simulator {

/// Delivers one posting of an event to a process, by the rules; the journal says what came of it.
void deliver(Mac& mac, Pid pid, const platform::EventImage& event, Route route);

/// Takes an event record of 248 bytes for a process. A malformed one is accepted like any other,
/// as the platform does, but has no effect, and the journal says so.
void takeRecord(Mac& mac, Pid pid, const std::string& record);

/// What an event record is for, whether or not it is well-formed.
enum class RecordKind { other, givesFocus, takesFocus, firstOfKeyPair, secondOfKeyPair };
RecordKind recordKind(const std::string& record);

/// The window that an event record names; 0 for one that is too short.
WindowNumber recordWindow(const std::string& record);

/// How long a receiver needs between two post operations.
inline constexpr Microseconds paceMin = 12'000;

/// The value of an event's field; the last write counts. Fields that only the private setter can
/// write are looked for among its writes alone. 0 when it was never written.
std::int64_t fieldOf(const platform::EventImage& event, quartz::Field field);

/// Whether a pointer event presses a button.
bool isPress(const platform::EventImage& event);

}  // namespace simulator
