#pragma once

#include "platform/event_tap.h"

namespace driver {

/// What becomes of an event of the guard's tap. The user's return ends the guard: it locks the
/// screen or, while grace lasts, does not. Up to the lock nothing is allocated and nobody is asked,
/// but for the clocks while grace may last.
tap::Verdict guardVerdict(const tap::Event& event);

/// Watches the user's input with `guardVerdict` from now on. Fails when the system gives no tap.
void watchForReturn();

}  // namespace driver
