#include "main/ending.h"

#include <mutex>
#include <utility>

#include "main/act.h"
#include "main/globals.h"
#include "main/undo.h"
#include "platform/loop.h"

namespace driver {

namespace {

bool claimEnding() {
  const std::lock_guard lock(globals().mutex);
  return !std::exchange(globals().ending, true);
}

}  // namespace

void beginEnding() {
  if (!claimEnding()) loop::suspend();
  awaitActs();
  runPendingUndos();
}

}  // namespace driver
