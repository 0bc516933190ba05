#include "platform/simulated/process_state.h"

#include <unistd.h>

#include <memory>
#include <utility>

namespace simulated {

namespace {

std::unique_ptr<ProcessState>& current() {
  static auto state = std::make_unique<ProcessState>();
  return state;
}

}  // namespace

ProcessState::~ProcessState() {
  if (lockDescriptor >= 0) close(lockDescriptor);
}

ProcessState& state() { return *current(); }

void renewState() { exchangeState(std::make_unique<ProcessState>()); }

std::unique_ptr<ProcessState> exchangeState(std::unique_ptr<ProcessState> state) {
  return std::exchange(current(), std::move(state));
}

}  // namespace simulated
