#include "simulator/input/taps.h"
#include "simulator/calls/calls.h"

namespace simulator::calls {

using driver::pack;

Answer createTap(Mac& mac, Client& client, const Arguments& arguments) {
  const auto number =
      simulator::createTap(mac, client, arguments.get<tap::Place>(0), arguments.get<tap::Kind>(1),
                           arguments.get<std::uint64_t>(2));
  if (!number) return {};
  return {pack(*number), 0};
}

Answer enableTap(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  simulator::enableTap(mac, arguments.get<std::int64_t>(0));
  return {};
}

Answer tapVerdict(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  takeVerdict(mac, arguments.get<std::int64_t>(0), arguments.get<std::int64_t>(1),
              arguments.get<bool>(2));
  return {};
}

}  // namespace simulator::calls
