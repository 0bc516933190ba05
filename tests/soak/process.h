#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "main/globals.h"
#include "platform/simulated/channel.h"
#include "platform/simulated/process_state.h"
#include "simulator/turns.h"
#include "tests/support/fiber.h"

namespace soak {

/// Thrown in every flow of a process that ends. Nothing between there and the flow's root catches
/// it.
struct Ended {};

/// One process of several in this one: the channel that its flows use, each of which goes on only
/// when it is given the turn.
class Process : public platform::Channel {
 public:
  using Flow = simulator::Turns::Flow;

  Process(simulator::Desktop& desktop, simulator::Turns& turns, std::size_t client);

  /// The first flow, which runs the driver, and waits for its turn.
  void begin(std::vector<std::string> commandLine);

  /// At each call its flow is put aside when this says so: it goes on when it is given the turn
  /// again.
  void putAsideWhen(std::function<bool()> isPutAside) { isPutAside_ = std::move(isPutAside); }

  /// Whether the flow is one of this process that has not ended.
  bool has(Flow flow) const;

  /// Adds all those flows.
  void addFlows(std::vector<Flow>& flows) const;

  /// Lets a flow go on with an answer, until it gives back the turn.
  void giveTurn(Flow flow, driver::Datum answer);

  /// The process is told to end, and no flow of its own does that yet: gives it one, which waits
  /// for its turn.
  bool isToldToEnd() const;
  Flow startEnding();

  bool isKilled() const;
  bool hasEnded() const { return status_.has_value(); }
  int status() const { return *status_; }
  std::size_t client() const { return client_; }

  /// Whatever its flows do, they end now. The process has the status that it ended with, or this
  /// one.
  void endWith(int status);

  driver::Datum call(platform::Call call) override;
  platform::Pid ownPid() const override;
  std::uintptr_t ownFlow() const override { return present_; }
  void startFlow(std::function<void()> body) override;
  void watchSignals(const std::vector<int>& numbers) override;
  void awaitEndingSignal(const std::vector<int>& numbers,
                         std::function<void(int)> handler) override;
  bool keepsOutput() const override { return true; }
  [[noreturn]] void exit(int status) override;
  [[noreturn]] void dieBySignal(int signal) override;

 private:
  void startFiber(Flow flow, std::function<void()> body);
  driver::Datum awaitTurn();
  [[noreturn]] void end(int status);
  void install();
  void remove();

  simulator::Desktop& desktop_;
  simulator::Turns& turns_;
  std::size_t client_;
  std::map<Flow, testing_support::Fiber> flows_;
  Flow present_ = 0;      // whose turn it is
  driver::Datum answer_;  // for that flow
  std::function<void(int)> endingHandler_;
  std::function<bool()> isPutAside_ = [] { return false; };
  bool isEnding_ = false;
  std::optional<int> status_;

  // What the process has for itself, while it is not its turn.
  std::unique_ptr<driver::Globals> globals_;
  std::unique_ptr<simulated::ProcessState> state_;
};

}  // namespace soak
