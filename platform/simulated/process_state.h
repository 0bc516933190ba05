#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/event_tap.h"
#include "platform/posix/descriptors.h"
#include "platform/process.h"
#include "platform/share.h"

namespace simulated {

/// What the simulated side of the seam keeps for its process: the handlers by the numbers under
/// which the simulated Mac calls for them.
struct ProcessState {
  /// A piece of work for the main flow, and how often it is still to be done.
  struct Work {
    std::function<void()> body;
    std::int64_t left = 0;
  };

  /// Guards the tables: flows may be threads that run at once.
  std::mutex mutex;

  std::function<void()> task;          // waits for the main flow to park
  bool mainIsServed = false;           // something else than a task is for the main flow to do
  std::atomic<bool> hasFlows = false;  // flows beside the main one have been started
  std::int64_t lastWork = 0;
  std::int64_t lastSemaphore = 0;
  std::map<std::int64_t, Work> works;
  std::optional<std::uintptr_t> ending;  // the flow that ends the process
  std::vector<std::function<void()>> exitHandlers;
  std::function<void(process::Signal)> signalHandler;
  std::map<std::int64_t, tap::Handler> tapHandlers;
  std::map<std::int64_t, share::StopHandler> stopHandlers;
  bool bringsStops = false;  // a flow waits for streams to stop
  std::function<void()> terminationHandler;
  std::function<void()> screenChangeHandler;
  std::optional<posix::Input> input;  // standard input, once something was read of it
  int lockDescriptor = -1;            // of the locked file

  ProcessState() = default;
  ProcessState(const ProcessState&) = delete;
  ProcessState& operator=(const ProcessState&) = delete;
  ~ProcessState();
};

/// The state of this process. It begins afresh with each channel that is set.
ProcessState& state();
void renewState();

/// Where several processes are played in one: that of the process whose turn it is, from now on.
/// Gives that of before; either may be none.
std::unique_ptr<ProcessState> exchangeState(std::unique_ptr<ProcessState> state);

}  // namespace simulated
