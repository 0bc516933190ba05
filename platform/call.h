#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "base/datum.h"
#include "platform/seam_calls.h"
#include "platform/wire.h"

/// The seam as data: what the simulated side of the seam says to a simulated Mac, and how its
/// structures travel. Not part of the Mac's executable.
namespace platform {

/// One call of a seam function.
struct Call {
  Function function{};
  driver::Datum::List arguments;
};

/// Where calls go. One process has one channel, for all its flows.
class Channel {
 public:
  Channel() = default;
  Channel(const Channel&) = delete;
  Channel& operator=(const Channel&) = delete;
  virtual ~Channel() = default;

  /// Makes the call and returns its answer once it is due. A platform error travels as an answer:
  /// see `Thrown`.
  virtual driver::Datum call(Call call) = 0;

  /// The process's id on the simulated Mac.
  virtual Pid ownPid() const = 0;

  /// Starts a further flow of this process, which makes its calls through this channel too.
  virtual void startFlow(std::function<void()> body) = 0;

  /// A number by which the calling flow differs from the others of this process. Flows are threads,
  /// unless the channel plays them in another way.
  virtual std::uintptr_t ownFlow() const {
    thread_local const char own = 0;
    return reinterpret_cast<std::uintptr_t>(&own);
  }

  /// Passes these signals on to the main flow from now on, where the process gets any.
  virtual void watchSignals(const std::vector<int>& numbers) = 0;

  /// Calls `handler` once, in a further flow, when the first of these signals comes. The next one
  /// ends the process at once.
  virtual void awaitEndingSignal(const std::vector<int>& numbers,
                                 std::function<void(int)> handler) = 0;

  /// True when the simulated Mac keeps what is written to standard output; false when the process
  /// writes to its own descriptor.
  virtual bool keepsOutput() const = 0;

  /// Ends the process after the simulated Mac has been told.
  [[noreturn]] virtual void exit(int status) = 0;

  /// Ends it by a signal, likewise.
  [[noreturn]] virtual void dieBySignal(int signal) = 0;

  /// The process has met a fatal signal. From now on only the calling flow makes calls.
  virtual void beginLastAct() {}
};

}  // namespace platform
