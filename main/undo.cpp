#include "main/undo.h"

#include <utility>

#include "main/globals.h"

namespace driver {

void pushUndo(std::function<void()> undo) { globals().pendingUndos.push_back(std::move(undo)); }

void runNewestUndo() {
  // Forgotten before it runs, so that nothing it meets can make it run again.
  const std::function<void()> undo = std::move(globals().pendingUndos.back());
  globals().pendingUndos.pop_back();
  undo();
}

void runPendingUndos() {
  while (!globals().pendingUndos.empty()) runNewestUndo();
}

}  // namespace driver
