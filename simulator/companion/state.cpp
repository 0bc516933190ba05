#include "simulator/companion/state.h"

#include <nlohmann/json.hpp>

#include "simulator/mac/json_text.h"
#include "simulator/mac/sharing_streams.h"
#include "simulator/rules/left_behind.h"
#include "simulator/world/keyboard_layouts.h"

namespace companion {

namespace {

using nlohmann::json;
using simulator::Application;
using simulator::Mac;
using simulator::World;

/// Of what is on the pasteboard, a state shows no more than this.
constexpr std::size_t shownDataMax = 1'000;

json pointJson(simulator::Point point) { return {{"x", point.x}, {"y", point.y}}; }

json frameJson(const simulator::Rect& frame) {
  return {{"height", frame.height}, {"width", frame.width}, {"x", frame.x}, {"y", frame.y}};
}

/// The window and the element that the user's keys go to.
json keyboardOf(const Application& front) {
  const auto* window = simulator::findElement(front, front.focusedWindow);
  const auto* element = simulator::findElement(front, front.focusedElement);
  return {{"element", element == nullptr ? "" : simulator::labelOf(*element)},
          {"window", window == nullptr ? 0 : window->window}};
}

/// A type on the pasteboard: its text, or how much of anything longer there is; null for what was
/// promised and never came.
json entryOf(const simulator::Pasteboard::Entry& entry) {
  json data;
  if (entry.data && entry.data->size() > shownDataMax) {
    data = std::to_string(entry.data->size()) + " bytes";
  } else if (entry.data) {
    data = simulator::textJson(*entry.data);
  }
  return {{"data", data}, {"type", entry.type}};
}

json clipboardOf(const simulator::Pasteboard& pasteboard) {
  json items = json::array();
  for (const auto& item : pasteboard.items) {
    json types = json::array();
    for (const auto& entry : item) types.push_back(entryOf(entry));
    items.push_back(std::move(types));
  }
  return items;
}

/// A process that holds something: it may have gone and left that behind.
json holder(const Mac& mac, simulator::Pid pid) {
  return {{"alive", simulator::isAlive(mac, pid)}, {"pid", pid}};
}

json appJson(const Application& application) {
  return {{"name", application.name.value_or("")}, {"pid", application.pid}};
}

json focusJson(const Mac& mac) {
  json held = json::array();
  for (const Application& application : mac.world.applications) {
    if (!application.running || application.focusByRecord == 0) continue;
    held.push_back({{"application", appJson(application)},
                    {"by", holder(mac, application.focusGivenBy)},
                    {"keyWindow", application.madeKey},
                    {"window", application.focusByRecord}});
  }
  return held;
}

/// Keys and buttons that were posted to applications and not released.
json pressedJson(const Mac& mac) {
  json pressed = json::array();
  for (const Application& application : mac.world.applications) {
    if (!application.running) continue;
    for (const simulator::HeldKey& key : application.keysDown) {
      pressed.push_back(
          {{"application", appJson(application)}, {"by", holder(mac, key.by)}, {"key", key.code}});
    }
    const simulator::ClickProgress& click = application.click;
    if (!click.pressedType) continue;
    const bool isLeft =
        *click.pressedType == static_cast<std::uint32_t>(quartz::EventType::leftMouseDown);
    pressed.push_back({{"application", appJson(application)},
                       {"button", isLeft ? "left" : "right"},
                       {"by", holder(mac, click.pressedBy)}});
  }
  return pressed;
}

/// What the user holds down: modifier keys and mouse buttons.
json devicesJson(const World& world) {
  json buttons = json::array();
  for (const auto& [type, button] : world.heldButtons) {
    const auto event = static_cast<quartz::EventType>(type);
    buttons.push_back(event == quartz::EventType::leftMouseDown    ? "left"
                      : event == quartz::EventType::rightMouseDown ? "right"
                                                                   : "other");
  }
  return {{"buttons", buttons}, {"modifiers", simulator::modifierNames(world.keyboard.modifiers)}};
}

json coversJson(const Mac& mac) {
  json covers = json::array();
  for (const simulator::Cover& cover : mac.world.covers) {
    json labels = json::array();
    for (const cover::Label& label : cover.labels) {
      labels.push_back(simulator::textJson(label.text));
    }
    covers.push_back({{"by", holder(mac, cover.owner)},
                      {"frame", frameJson(cover.frame)},
                      {"labels", labels},
                      {"window", cover.window}});
  }
  return covers;
}

json tapsJson(const Mac& mac) {
  json taps = json::array();
  for (const simulator::Tap& tap : mac.tapLine.taps) {
    taps.push_back({{"by", holder(mac, tap.owner)},
                    {"enabled", tap.enabled},
                    {"filters", tap.filters},
                    {"hears", tap.isValid && !tap.isDead}});
  }
  return taps;
}

json sharingJson(const Mac& mac) {
  json shared = json::array();
  for (const simulator::Sharing& sharing : mac.world.sharings) {
    shared.push_back({{"by", holder(mac, sharing.client)},
                      {"frames", simulator::framesOf(sharing, mac.now)},
                      {"target", sharing.owner},
                      {"window", sharing.window}});
  }
  return shared;
}

json displayHoldsJson(const Mac& mac) {
  json holds = json::array();
  for (const auto& client : mac.clients) {
    if (!client) continue;
    for (const std::string& name : client->displayHolds) {
      holds.push_back({{"by", holder(mac, client->pid)}, {"name", simulator::textJson(name)}});
    }
  }
  return holds;
}

json processesJson(const Mac& mac) {
  json processes = json::array();
  for (const auto& client : mac.clients) {
    if (!client || client->left) continue;
    processes.push_back({{"arguments", simulator::shownArguments(*client)}, {"pid", client->pid}});
  }
  return processes;
}

json faultsJson(const simulator::Desktop& desktop) {
  json faults = json::array();
  for (const simulator::ArmedFault& armed : desktop.faults()) {
    if (armed.isSpent()) continue;
    faults.push_back({{"counted", armed.counted}, {"fault", simulator::faultText(armed.fault)}});
  }
  return faults;
}

}  // namespace

json userState(const Mac& mac) {
  const World& world = mac.world;
  const Application* front = simulator::findApplication(world, world.frontmost);
  json application;
  json keyboard;
  if (front != nullptr) {
    application = appJson(*front);
    keyboard = keyboardOf(*front);
  }
  return {{"clipboard", clipboardOf(world.pasteboard)},
          {"front", application},
          {"keyboard", keyboard},
          {"locked", world.session.locked.value_or(false)},
          {"ok", true},
          {"onConsole", world.session.onConsole.value_or(true)},
          {"pointer", pointJson(world.pointer)}};
}

json wholeState(const simulator::Desktop& desktop) {
  const Mac& mac = desktop.mac();
  json state = userState(mac);
  state["covers"] = coversJson(mac);
  state["devices"] = devicesJson(mac.world);
  state["displayHolds"] = displayHoldsJson(mac);
  state["faults"] = faultsJson(desktop);
  state["focus"] = focusJson(mac);
  state["now"] = static_cast<double>(mac.now) / 1000;
  state["pressed"] = pressedJson(mac);
  state["processes"] = processesJson(mac);
  state["sharing"] = sharingJson(mac);
  state["taps"] = tapsJson(mac);
  return state;
}

}  // namespace companion
