#include <limits>

#include "simulator/calls/calls.h"
#include "simulator/world/user_state.h"

/// How the Mac answers what is about its user and how its system is set up.
namespace simulator::calls {

using driver::pack;

namespace {

/// The level of the platform's shielding windows.
constexpr std::int64_t shieldingWindowLevel = 2'147'483'628;

/// Since the user last caused an event of this type; none when that never was.
std::optional<Microseconds> idleTime(const Mac& mac, std::uint32_t type) {
  const Activity& activity = mac.world.activity;
  const auto last = activity.lastTimes.find(type);
  if (last != activity.lastTimes.end()) return mac.now - last->second;
  if (!activity.before) return std::nullopt;
  return mac.now + *activity.before;
}

std::string directoryOf(const World& world) {
  return world.system.directory.value_or("/Users/" + world.user.loginName);
}

}  // namespace

Answer secondsSinceLast(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const auto idle = idleTime(mac, arguments.get<std::uint32_t>(0));
  if (!idle) return {pack(std::numeric_limits<double>::infinity()), 0};
  return {pack(static_cast<double>(*idle) / microsecondsPerSecond), 0};
}

Answer preferredLanguages(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  return {pack(mac.world.system.languages), 0};
}

Answer operatingSystemVersion(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  return {pack(mac.world.system.version), 0};
}

Answer currentDirectory(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  return {pack(directoryOf(mac.world)), 0};
}

Answer toolOutput(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  std::optional<platform::Bytes> output;
  const auto tool = mac.world.system.tools.find(arguments.text(0));
  if (tool != mac.world.system.tools.end()) output = tool->second;
  return {pack(output), 0};
}

Answer resolvedPath(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  return {pack(resolved(mac.world.system, directoryOf(mac.world), arguments.text(0))), 0};
}

Answer shieldingLevel(Mac& /*mac*/, Client& /*client*/, const Arguments& /*arguments*/) {
  return {pack(shieldingWindowLevel), 0};
}

Answer terminated(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  return {pack(findApplication(mac.world, arguments.get<Pid>(0)) == nullptr), 0};
}

Answer prohibitOwnActivation(Mac& mac, Client& client, const Arguments& /*arguments*/) {
  enter(mac, {.kind = JournalEntry::Kind::policy, .target = client.pid, .what = "prohibited"});
  return {};
}

}  // namespace simulator::calls
