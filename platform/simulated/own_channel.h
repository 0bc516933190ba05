#pragma once

#include "platform/call.h"

namespace simulated {

/// The channel of a process of its own, made on first use, alive until the process ends: to the
/// simulated Mac that listens at the socket of which the environment variable SIMULATED_MAC tells.
/// When nobody listens there, or the Mac goes away later, the process ends with one line of JSON
/// that says so, status 1.
///
/// Without that variable it is the channel of a process that has no Mac. What only reads the
/// process itself, or what a run reads at its start, is answered; anything else ends the process
/// with one line that says how to start a simulated Mac, status 1.
platform::Channel& ownChannel();

}  // namespace simulated
