#include "simulator/input/posted_keys.h"

#include <algorithm>
#include <cstdint>

#include "platform/text.h"
#include "simulator/input/key_presses.h"
#include "simulator/input/key_window.h"
#include "simulator/world/keyboard_layouts.h"
#include "simulator/world/utf16_text.h"

namespace simulator {

using platform::EventImage;
using quartz::EventType;

namespace {

constexpr std::size_t textUnitsMax = 20;

bool isUp(const EventImage& event) { return typeOf(event) == EventType::keyUp; }

/// What the event types. The platform takes no more than twenty units, but one character whole.
std::string textOfEvent(const EventImage& event) {
  const std::u16string units = unitsOf(event.text);
  std::string text = utf8Of(units);
  if (units.size() <= textUnitsMax || text::characters(text).size() == 1) return text;
  return utf8Of(std::u16string_view(units).substr(0, textUnitsMax));
}

/// Why the application does not have the keyboard; empty when it has it.
std::string keyboardFault(const World& world, const Application& application) {
  if (world.frontmost == application.pid) return "";
  if (application.focusByRecord == 0) return "the application is neither in front nor has focus";
  const WindowNumber key = keyWindowOf(application);
  if (key == 0) return "no window of the application has its focus";
  const Element* focused = findElement(application, application.focusedElement);
  const bool isKey = application.madeKey == key || (focused != nullptr && focused->window == key);
  return isKey ? "" : "no window was made key";
}

std::vector<HeldKey>::iterator heldKey(std::vector<HeldKey>& keys, std::int64_t code) {
  return std::find_if(keys.begin(), keys.end(),
                      [&](const HeldKey& each) { return each.code == code; });
}

Landing release(Application& application, std::int64_t code) {
  auto& keys = application.keysDown;
  const auto key = heldKey(keys, code);
  if (key == keys.end()) return refused("a release without its press");
  keys.erase(key);
  return {true, ""};
}

}  // namespace

std::string nameOfKeyEvent(const EventImage& event) {
  std::string name = (isUp(event) ? "key-up " : "key-down ") + std::to_string(event.keyCode);
  if (event.flags.value_or(0) != 0) name += " with " + modifierNames(*event.flags);
  if (!event.text.empty()) name += " \"" + textOfEvent(event) + "\"";
  return name;
}

Landing takeKeyEvent(World& world, Application& application, const EventImage& event, Route route) {
  // Keys that come by the private route are not known to arrive anywhere.
  if (route == Route::privateRoute) return refused("wrong route");
  if (std::string fault = keyboardFault(world, application); !fault.empty()) {
    return refused(std::move(fault));
  }
  if (isUp(event)) return release(application, event.keyCode);
  auto& keys = application.keysDown;
  // A key that is held down repeats: it goes down again without having come up.
  const bool repeats = heldKey(keys, event.keyCode) != keys.end();
  if (!repeats) keys.push_back({event.keyCode, world.actor});
  if (application.hangs) return refused(hangingSentence);
  const KeyPress press{event.keyCode, event.flags.value_or(world.keyboard.modifiers),
                       textOfEvent(event)};
  return {true, takeKey(world, application, press)};
}

}  // namespace simulator
