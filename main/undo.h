#pragma once

#include <functional>

namespace driver {

/// Notes what the frame that begins here must undo. The frame calls `runNewestUndo` when it is
/// left; should `fail` end the process before, the undo runs then. It runs once in any case. It
/// posts no input events and makes no accessibility call.
void pushUndo(std::function<void()> undo);

/// Runs and forgets the newest undo. There is one.
void runNewestUndo();

/// Runs and forgets all that are pending, newest first.
void runPendingUndos();

}  // namespace driver
