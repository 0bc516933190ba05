#include <algorithm>

#include "simulator/calls/calls.h"
#include "simulator/world/actions.h"

namespace simulator::calls {

using driver::pack;

namespace {

/// Other processes' window titles need the screen recording permission.
windowserver::Window describe(const World& world, const Window& window) {
  windowserver::Window entry{window.listedNumber.value_or(window.number),
                             window.owner,
                             window.layer,
                             std::nullopt,
                             window.frame.x,
                             window.frame.y,
                             window.frame.width,
                             window.frame.height};
  if (world.screenRecordingAllowed) entry.name = window.title;
  return entry;
}

/// Its level is above that of all other windows.
windowserver::Window describe(const Cover& cover) {
  return {cover.window,  cover.owner,   cover.level,       std::nullopt,
          cover.frame.x, cover.frame.y, cover.frame.width, cover.frame.height};
}

workspace::Application describe(const World& world, const Application& application) {
  return {application.pid,        application.bundleIdentifier,       application.name,
          application.bundlePath, application.pid == world.frontmost, application.hidden};
}

template <class Predicate>
std::vector<workspace::Application> select(const World& world, Predicate predicate) {
  std::vector<workspace::Application> selected;
  for (const Application& application : world.applications) {
    if (application.running && predicate(application)) {
      selected.push_back(describe(world, application));
    }
  }
  return selected;
}

std::optional<workspace::Application> describePid(const World& world, Pid pid) {
  const Application* found = findApplication(world, pid);
  if (found == nullptr) return std::nullopt;
  return describe(world, *found);
}

}  // namespace

Answer windows(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const bool all =
      arguments.get<windowserver::Windows>(0) == windowserver::Windows::allWithoutDesktop;
  std::vector<windowserver::Window> list;
  for (auto cover = mac.world.covers.rbegin(); cover != mac.world.covers.rend(); ++cover) {
    list.push_back(describe(*cover));
  }
  for (const Window& window : mac.world.windows) {
    if (window.onScreen || all) list.push_back(describe(mac.world, window));
  }
  return {pack(std::optional(std::move(list))), 0};
}

Answer windowDescription(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  std::vector<windowserver::Window> list;
  const Window* window = findWindow(mac.world, arguments.get<WindowNumber>(0));
  if (window != nullptr) list.push_back(describe(mac.world, *window));
  return {pack(std::optional(std::move(list))), 0};
}

Answer session(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  std::optional<windowserver::Session> answer;
  const Session& session = mac.world.session;
  if (session.readable) answer = windowserver::Session{session.locked, session.onConsole};
  return {pack(answer), 0};
}

Answer displayMode(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const auto id = arguments.get<std::uint32_t>(0);
  std::optional<windowserver::DisplayMode> mode;
  for (const Display& display : mac.world.displays) {
    if (display.id == id && display.modeReadable) {
      mode = {static_cast<std::uint64_t>(display.frame.width),
              static_cast<std::uint64_t>(display.frame.width * display.scale)};
    }
  }
  return {pack(mode), 0};
}

Answer captureAccess(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  return {pack(mac.world.screenRecordingAllowed), 0};
}

Answer application(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  return {pack(describePid(mac.world, arguments.get<Pid>(0))), 0};
}

Answer applicationsWithBundle(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const std::string identifier = arguments.text(0);
  return {
      pack(select(mac.world,
                  [&](const Application& each) { return each.bundleIdentifier == identifier; })),
      0};
}

Answer applications(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  return {pack(select(mac.world, [](const Application&) { return true; })), 0};
}

Answer frontmost(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  return {pack(describePid(mac.world, mac.world.frontmost)), 0};
}

Answer unhide(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const auto pid = arguments.get<Pid>(0);
  const bool shown = simulator::unhide(mac.world, pid);
  enter(mac, {.kind = JournalEntry::Kind::action,
              .target = pid,
              .what = "unhide",
              .landed = shown,
              .outcome = shown ? "" : "there is no such application"});
  return {pack(shown), 0};
}

Answer activationPolicy(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  std::optional<workspace::ActivationPolicy> policy;
  const Application* found = findApplication(mac.world, arguments.get<Pid>(0));
  if (found != nullptr) policy = found->policy;
  return {pack(policy), 0};
}

}  // namespace simulator::calls
