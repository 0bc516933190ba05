#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulator/desktop.h"

namespace soak {

/// Several processes of the driver in this one, which take turns on one simulated Mac, and somebody
/// who does things at times. Whoever has the turn has the state of the run and of the simulated
/// side for itself.
class Processes {
 public:
  using Microseconds = simulator::Microseconds;

  /// The desktop outlives this object. With a seed, chance decides at each call which of the flows
  /// that could go on does so; without, each goes on until it waits.
  explicit Processes(simulator::Desktop& desktop, std::optional<std::uint64_t> seed = {});
  Processes(const Processes&) = delete;
  Processes& operator=(const Processes&) = delete;
  ~Processes();

  /// Does something at a time; equal times go in the order of the calls.
  void at(Microseconds time, std::function<void()> act);

  /// A process begins, as the desktop's client that is given. `ended` is called when it has ended.
  std::size_t start(const std::vector<std::string>& commandLine,
                    const std::map<std::string, std::string>& environment,
                    std::function<void()> ended);

  /// The process gets a signal.
  void signal(std::size_t client, int number);

  /// Lets time pass until everybody has ended, or waits for what does not come. Those that wait are
  /// ended then, with the status `testing_support::stillRunning`.
  void run();

  /// Of a process that has ended: as testing_support::runDirect gives it.
  int statusOf(std::size_t client) const;

 private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace soak
