#pragma once

#include "simulator/mac/mac.h"

namespace simulator {

/// What goes with a process: its covers, its taps, what it shares, its hold on the display. What it
/// has pressed or taken stays. Idempotent.
void endWithProcess(Mac& mac, Client& client);

}  // namespace simulator
