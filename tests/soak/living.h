#pragma once

#include "tests/soak/case.h"
#include "tests/soak/sketch.h"

namespace soak {

/// A run of a command that lives on: the capture service with requests, the guard, the watcher, the
/// hold on the display. It runs beside what follows and is ended within `duration` by its input or
/// by a signal, unless something else ends it before.
Step someLivingRun(Random& random, const MacSketch& mac, Microseconds duration);

}  // namespace soak
