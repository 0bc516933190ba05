#pragma once

#include <vector>

#include "platform/process.h"

/// A process that somebody else tells to end: a caller whose patience is over, a terminal that
/// closes.
namespace driver {

/// The signals that say so, without those that were ignored when the process started: these stay
/// ignored.
std::vector<process::Signal> endingSignals();

/// From now on each of them ends the run, on a flow of its own and whatever the run is waiting for:
/// no further act begins, those under way are waited for, what frames have still to undo is undone,
/// the run's one line says why unless it is out, and the process ends by that signal. A second
/// signal ends it at once.
void endWhenTold();

}  // namespace driver
