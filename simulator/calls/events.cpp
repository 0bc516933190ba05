#include "simulator/calls/calls.h"
#include "simulator/input/posted_pointer.h"

namespace simulator::calls {

using driver::pack;

namespace {

constexpr std::int64_t noSuchProcess = -600;

Answer serial(std::int64_t status, Pid pid) {
  return {pack(std::vector<std::int64_t>{status, 0, pid}), 0};
}

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

// A process's serial number has its pid in the low word.
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

}  // namespace simulator::calls
