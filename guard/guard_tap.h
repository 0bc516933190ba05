#pragma once

#include "platform/event_tap.h"

/// The guard's tap, by which it watches for the user's return. Main flow only.
namespace driver {

/// Watches the user's input with `guardVerdict` from now on. Fails when the system gives no tap, or
/// one that does not work, and when it does not say so in time. Sees to it once a second, and from
/// a flow of its own, that the tap works: one that does not work any more locks and ends the guard.
void watchForReturn();

/// What becomes of an event of the guard's tap. The user's return ends the guard: it locks the
/// screen or, while grace lasts, does not. Up to the lock nothing is allocated and nobody is asked,
/// but for the clocks while grace may last.
tap::Verdict guardVerdict(const tap::Event& event);

}  // namespace driver
