#include "platform/event_tap.h"

#include "platform/simulated/channel.h"
#include "platform/simulated/process_state.h"

namespace tap {

using platform::Function;
using simulated::state;

std::optional<Tap> create(Place place, Kind kind, std::uint64_t mask, Handler handler) {
  const auto answer = simulated::ask(Function::createTap, place, kind, mask);
  if (answer.isNothing()) return std::nullopt;
  const auto number = driver::unpack<std::int64_t>(answer);
  const std::lock_guard lock(state().mutex);
  state().tapHandlers[number] = std::move(handler);
  return simulated::makeHandle<Tap>(number);
}

// The main flow serves every tap here.
void attach(const Tap& /*tap*/) { state().mainIsServed = true; }

void enable(const Tap& tap) {
  simulated::ask(Function::enableTap, simulated::objectOf<std::int64_t>(tap));
}

bool isEnabled(const Tap& tap) {
  return simulated::askFor<bool>(Function::tapIsEnabled, simulated::objectOf<std::int64_t>(tap));
}

bool canBeMade(Kind kind, std::uint64_t mask) {
  return simulated::askFor<bool>(Function::tapCanBeMade, kind, mask);
}

}  // namespace tap
