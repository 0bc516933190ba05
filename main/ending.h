#pragma once

#include <cstdint>
#include <functional>
#include <mutex>

/// What the end of the process must respect, whoever ends it: acts that are under way, and what
/// frames have still to undo.
namespace driver {

/// What must not be cut in two by the end of the process, as far as it can be helped: one event
/// with the pause after it, focus that is given or taken back. It is under way as long as the
/// object lives.
class Act {
 public:
  /// Begins what the process must not do once it is ending: then the flow is held back for good.
  Act();

  /// Begins what gives something back, which an ending process does too. The caller holds
  /// `globals().mutex` and takes, under the same lock, what is to be given back.
  explicit Act(const std::lock_guard<std::mutex>& held);

  Act(const Act&) = delete;
  Act& operator=(const Act&) = delete;
  ~Act();
};

/// Another flow is ending the process. Asked within an act, of which not all must still be done.
bool isEnding();

/// Begins what a process must not do either once it is ending, but need not wait for: a message to
/// an application, which arrives whole or not at all and may take seconds. Then the flow is held
/// back for good.
void holdBackIfEnding();

/// How long a process that must end may still take for what is under way and for its last line.
inline constexpr std::uint32_t endingMicroseconds = 250'000;

/// Waits until no act is under way, so long at most.
void awaitActs(std::uint32_t microseconds = endingMicroseconds);

/// Notes what the frame that begins here must undo. The frame calls `runNewestUndo` when it is
/// left; should the process end before, by `fail` or by another flow, the undo runs then. It runs
/// once in any case. It presses nothing and makes no accessibility call.
void pushUndo(std::function<void()> undo);

/// Forgets the newest undo, which the frame does not need any more. In an ending process it stays,
/// and the calling flow is held back for good.
void forgetNewestUndo();

/// Runs and forgets the newest undo. When another flow that ends the process has done so, the
/// calling flow is held back for good.
void runNewestUndo();

/// Runs and forgets all that are pending, newest first.
void runPendingUndos();

/// The calling flow is going to end the process, beside others that go on: from now on nobody
/// begins an act. Waits for those that are under way, so long at most, then undoes what frames have
/// still to undo, and waits for what another flow is undoing. Only the first call comes back;
/// another flow is held back for good.
void beginEnding(std::uint32_t actsMicroseconds = endingMicroseconds);

}  // namespace driver
