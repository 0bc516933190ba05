#pragma once

#include "platform/call.h"

namespace simulated {

/// The channel of a process that was told of no simulated Mac. What only reads the process itself,
/// or what a run reads at its start, is answered; anything else ends the process with one line of
/// JSON that says how to start a simulated Mac, status 1.
class AbsentChannel : public platform::Channel {
 public:
  driver::Datum call(platform::Call call) override;
  platform::Pid ownPid() const override;
  [[noreturn]] void startFlow(std::function<void()> body) override;
  void watchSignals(const std::vector<int>& /*numbers*/) override {}
  bool keepsOutput() const override { return false; }
  [[noreturn]] void exit(int status) override;
  [[noreturn]] void dieBySignal(int signal) override;
};

/// Writes a failure reply to the process's own standard output and exits with status 1.
[[noreturn]] void failWithoutMac(const std::string& message);

/// The value of a variable in the process's own environment, as the answer of a call.
driver::Datum ownEnvironment(const platform::Call& call);

}  // namespace simulated
