#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "simulator/desktop.h"

namespace testing_support {

/// The status of a run that nothing ends: all its flows wait, and nothing more is scripted.
inline constexpr int stillRunning = -1;

/// In what order the flows of a process go on. By default a flow goes on until it waits.
class Schedule {
 public:
  /// At these calls, counted from 0 from when the process has several flows, the flow that made it
  /// is put aside for the flow with this number (0 is the main one), if that could go on as well.
  std::map<std::size_t, std::size_t> switches;

  /// When given: the flow that made each of these calls, in order.
  std::vector<std::size_t>* callers = nullptr;

  /// The flow that goes on at the present call, made by `caller`; none: that one.
  std::optional<std::size_t> nextSwitch(std::size_t caller);

 private:
  std::size_t calls_ = 0;
};

/// Runs the driver inside this process, as this client of the desktop. Virtual time passes with its
/// calls. Returns the exit status, 128 and the number of the signal that ended it, or
/// `stillRunning`.
int runDirect(simulator::Desktop& desktop, std::size_t client,
              const std::vector<std::string>& commandLine, const Schedule& schedule = {});

/// The same for `body` in place of the driver. A body that ends the process does not come back;
/// when it returns, the process does not end, and the result is 0.
int runBodyDirect(simulator::Desktop& desktop, std::size_t client,
                  const std::function<void()>& body);

/// Runs the driver as a child of this process, with the desktop here. Returns the exit status.
int runForked(simulator::Desktop& desktop, std::size_t client,
              const std::vector<std::string>& commandLine);

}  // namespace testing_support
