#pragma once

#include <functional>

namespace driver {

/// Notes what the frame that begins here must undo. The frame calls `runNewestUndo` when it is
/// left; should the process end before, by `fail` or by another flow, the undo runs then. It runs
/// once in any case. It posts no input events and makes no accessibility call.
void pushUndo(std::function<void()> undo);

/// Runs and forgets the newest undo. When another flow that ends the process has done so, the
/// calling flow is held back for good.
void runNewestUndo();

/// Runs and forgets all that are pending, newest first.
void runPendingUndos();

}  // namespace driver
