#pragma once

#include "simulator/mac/mac.h"
#include "simulator/rules/rule.h"

namespace simulator {

/// I27: no process that was killed has left anything behind, focus that it had given, a key or a
/// button that it had pressed, unless somebody has undone that since. What it says is of now: it is
/// no violation any more once that is done. A process that ended by itself was judged then.
Violations leftBehind(const Mac& mac);

/// Whether the process has given focus, or pressed a key or a button, that was not undone.
bool holdsAnything(const Mac& mac, Pid pid);

/// Whether a process that uses the Mac, or has used it, is there.
bool isAlive(const Mac& mac, Pid pid);

}  // namespace simulator
