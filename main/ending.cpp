#include "main/ending.h"

#include <mutex>
#include <optional>
#include <utility>

#include "main/globals.h"
#include "platform/loop.h"

namespace driver {

namespace {

// Polled for, since every wait is a call of the seam; a condition variable would wait beside it, in
// time that no test commands.
constexpr std::uint32_t pollMicroseconds = 1'000;

/// True when the act has begun, false when the process is ending.
bool mayBegin() {
  const std::lock_guard lock(globals().mutex);
  if (globals().ending) return false;
  ++globals().actsUnderWay;
  return true;
}

bool actsAreUnderWay() {
  const std::lock_guard lock(globals().mutex);
  return globals().actsUnderWay > 0;
}

bool undosAreUnderWay() {
  const std::lock_guard lock(globals().mutex);
  return globals().undosUnderWay > 0;
}

/// What is being undone, as long as it lives.
struct Undoing {
  /// The caller holds the mutex.
  explicit Undoing(std::function<void()> itsUndo) : undo(std::move(itsUndo)) {
    ++globals().undosUnderWay;
  }
  Undoing(const Undoing&) = delete;
  Undoing& operator=(const Undoing&) = delete;
  ~Undoing() {
    const std::lock_guard lock(globals().mutex);
    --globals().undosUnderWay;
  }
  std::function<void()> undo;
};

/// False when there is none.
bool runOneUndo() {
  std::optional<Undoing> undoing;
  {
    // Forgotten before it runs, so that nothing it meets can make it run again.
    const std::lock_guard lock(globals().mutex);
    if (globals().pendingUndos.empty()) return false;
    undoing.emplace(std::move(globals().pendingUndos.back()));
    globals().pendingUndos.pop_back();
  }
  undoing->undo();
  return true;
}

/// False when the process is ending: whose undo is the newest then, nobody knows.
bool mayForgetNewestUndo() {
  const std::lock_guard lock(globals().mutex);
  if (globals().ending) return false;
  globals().pendingUndos.pop_back();
  return true;
}

/// Each of them ends by itself: an undo waits for no application.
void awaitUndos() {
  while (undosAreUnderWay()) loop::sleepMicroseconds(pollMicroseconds);
}

bool claimEnding() {
  const std::lock_guard lock(globals().mutex);
  return !std::exchange(globals().ending, true);
}

}  // namespace

Act::Act() {
  if (!mayBegin()) loop::suspend();
}

Act::Act(const std::lock_guard<std::mutex>& /*held*/) { ++globals().actsUnderWay; }

Act::~Act() {
  const std::lock_guard lock(globals().mutex);
  --globals().actsUnderWay;
}

bool isEnding() {
  const std::lock_guard lock(globals().mutex);
  return globals().ending;
}

void holdBackIfEnding() {
  if (isEnding()) loop::suspend();
}

void awaitActs(std::uint32_t microseconds) {
  std::uint32_t waited = 0;
  for (; actsAreUnderWay() && waited < microseconds; waited += pollMicroseconds) {
    loop::sleepMicroseconds(pollMicroseconds);
  }
}

void pushUndo(std::function<void()> undo) {
  const std::lock_guard lock(globals().mutex);
  globals().pendingUndos.push_back(std::move(undo));
}

void runNewestUndo() {
  // An undo that is gone was run by a flow that ends the process: this one has no more to say.
  if (!runOneUndo()) loop::suspend();
}

void forgetNewestUndo() {
  if (!mayForgetNewestUndo()) loop::suspend();
}

void runPendingUndos() {
  while (runOneUndo()) {
  }
}

void beginEnding(std::uint32_t actsMicroseconds) {
  if (!claimEnding()) loop::suspend();
  // First the acts: what one of them has just given must be among the undos before those run.
  awaitActs(actsMicroseconds);
  runPendingUndos();
  awaitUndos();
}

}  // namespace driver
