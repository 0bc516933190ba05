#pragma once

#include "platform/call.h"
#include "simulator/input/posted_event.h"
#include "simulator/mac/mac.h"

/// What becomes of posted events: the rules by which windows take background input.
namespace simulator {

/// Delivers one posting of an event to a process, by the rules; the journal says what came of it.
void deliver(Mac& mac, Pid pid, const platform::EventImage& event, Route route);

/// What has waited for menus that have closed since is delivered.
void letWaitingInputGoOn(Mac& mac);

/// How long a receiver needs between two post operations.
inline constexpr Microseconds paceMin = 12'000;

}  // namespace simulator
