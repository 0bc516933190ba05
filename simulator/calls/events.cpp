#include "simulator/calls/calls.h"
#include "simulator/input/posted_pointer.h"
#include "simulator/input/records.h"
#include "simulator/input/taps.h"

/// How the Mac answers what is about events: making and posting them, event records, and taps.
namespace simulator::calls {

using driver::pack;

namespace {

constexpr std::int64_t noSuchProcess = -600;

Answer serial(std::int64_t status, Pid pid) {
  return {pack(std::vector<std::int64_t>{status, 0, pid}), 0};
}

/// Events are built by the client, which sends all of one when it posts it: the Mac only names
/// them.
Answer newNumber(Mac& mac) { return {pack(++mac.numbers), 0}; }

}  // namespace

Answer createSource(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  return newNumber(mac);
}

Answer createEvent(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  return {pack(mac.world.pointer), 0};
}

Answer createMouseEvent(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  return newNumber(mac);
}

Answer createScrollEvent(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  return newNumber(mac);
}

Answer createKeyboardEvent(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  return newNumber(mac);
}

Answer publicPost(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  deliver(mac, arguments.get<Pid>(0), arguments.get<platform::EventImage>(1), Route::publicRoute);
  return {};
}

Answer privatePost(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  deliver(mac, arguments.get<Pid>(0), arguments.get<platform::EventImage>(1), Route::privateRoute);
  return {};
}

// A process's serial number has its pid in the low word. That is ours: a client must not know it.
Answer postRecord(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const auto pid = static_cast<Pid>(arguments.get<std::uint32_t>(1));
  if (arguments.get<std::uint32_t>(0) != 0 || findApplication(mac.world, pid) == nullptr) {
    return {pack(noSuchProcess), 0};
  }
  takeRecord(mac, pid, arguments.text(2));
  return {pack(platform::statusSuccess), 0};
}

Answer processForPid(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const auto pid = arguments.get<Pid>(0);
  return serial(findApplication(mac.world, pid) != nullptr ? 0 : noSuchProcess, pid);
}

Answer frontProcess(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  const Pid front = mac.world.frontmost;
  return serial(front != 0 ? 0 : noSuchProcess, front);
}

Answer processPid(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const auto pid = static_cast<Pid>(arguments.get<std::uint32_t>(1));
  return serial(findApplication(mac.world, pid) != nullptr ? 0 : noSuchProcess, pid);
}

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

Answer tapIsEnabled(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  return {pack(isTapEnabled(mac, arguments.get<std::int64_t>(0))), 0};
}

Answer tapCanBeMade(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  return {pack(canMakeTap(mac, arguments.get<tap::Kind>(0), arguments.get<std::uint64_t>(1))), 0};
}

Answer tapVerdict(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  takeVerdict(mac, arguments.get<std::int64_t>(0), arguments.get<std::int64_t>(1),
              arguments.get<bool>(2));
  return {};
}

}  // namespace simulator::calls
