#include "main/undo.h"

#include <mutex>
#include <optional>
#include <utility>

#include "main/act.h"
#include "main/globals.h"
#include "platform/loop.h"

namespace driver {

namespace {

/// False when there is none.
bool runOneUndo() {
  std::function<void()> undo;
  std::optional<Act> act;
  {
    // Forgotten before it runs, so that nothing it meets can make it run again.
    const std::lock_guard lock(globals().mutex);
    if (globals().pendingUndos.empty()) return false;
    act.emplace(lock);
    undo = std::move(globals().pendingUndos.back());
    globals().pendingUndos.pop_back();
  }
  undo();
  return true;
}

}  // namespace

void pushUndo(std::function<void()> undo) {
  const std::lock_guard lock(globals().mutex);
  globals().pendingUndos.push_back(std::move(undo));
}

void runNewestUndo() {
  if (!runOneUndo()) loop::suspend();
}

void runPendingUndos() {
  while (runOneUndo()) {
  }
}

}  // namespace driver
