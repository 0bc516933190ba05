#include "input/keys.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "accessibility/element.h"
#include "accessibility/messages.h"
#include "accessibility/snapshot.h"
#include "accessibility/walk.h"
#include "input/key_codes.h"
#include "input/post.h"
#include "main/ending.h"
#include "main/replies.h"
#include "platform/ax.h"
#include "platform/loop.h"
#include "platform/quartz.h"
#include "platform/text.h"

namespace driver {

namespace {

// Menus that nest deeper are left alone, and a menu bar that never ends is given up.
constexpr WalkBounds menuBounds = {20'000, 6};

// The press comes back before the menu's command has run.
constexpr std::uint32_t menuPauseMicroseconds = 100'000;

/// The modifiers of a shortcut as menu items have them. Command is implied: its own bit, 8, says
/// that it is not needed.
int menuModifiers(std::uint64_t flags) {
  int mask = 0;
  if (hasModifier(flags, quartz::Modifier::shift)) mask += 1;
  if (hasModifier(flags, quartz::Modifier::option)) mask += 2;
  if (hasModifier(flags, quartz::Modifier::control)) mask += 4;
  return mask;
}

bool hasShortcut(Snapshot& element, std::string_view character, int modifiers) {
  if (element.role() != "AXMenuItem") return false;
  const std::string* own = element.text(Attribute::menuCharacter);
  if (own == nullptr || text::lowercase(*own) != character) return false;
  return element.number(Attribute::menuModifiers).value_or(0) == modifiers;
}

/// The item in an application's menus whose shortcut is this character with these modifier flags,
/// of which command is implied; none when there is none that is enabled. The one in the last menu,
/// if there are several.
std::optional<ax::Element> menuEquivalent(platform::Pid pid, std::string_view character,
                                          std::uint64_t flags) {
  std::optional<ax::Element> bar = axElement(ax::application(pid), "AXMenuBar");
  if (!bar) return std::nullopt;
  const int modifiers = menuModifiers(flags);
  Walk walk(
      {std::move(*bar)},
      {Attribute::role, Attribute::enabled, Attribute::menuCharacter, Attribute::menuModifiers},
      menuBounds);
  while (Snapshot* element = walk.next()) {
    if (!hasShortcut(*element, character, modifiers)) continue;
    if (!element->isFalse(Attribute::enabled)) return element->element();
  }
  return std::nullopt;
}

/// Throws InputFailure when another window than `before`, and than the one that is meant, is key by
/// now. The user may have come, chosen it and gone while nobody looked who is in front.
void requireKeyWindow(const std::optional<ax::Element>& before, const KeyboardInput& input) {
  const std::optional<ax::Element> now = input.keyWindow();
  if (!before || !now || ax::hash(*before) == ax::hash(*now)) return;
  if (input.hasKeyboard()) return;
  input.requireKeyboard();
  throw InputFailure("another window of the target app has become key; nothing was pressed");
}

/// The menu's item to press in place of a combination with command. The search may take seconds,
/// and a command of the menu acts on the key window, as the keys would: throws InputFailure when
/// that has become another one.
std::optional<ax::Element> itemInPlaceOf(const KeyCombination& keys, const KeyboardInput& input) {
  const std::optional<std::string_view> character = characterOfKey(keys.code);
  if (!character) return std::nullopt;
  const std::optional<ax::Element> keyWindow = input.keyWindow();
  std::optional<ax::Element> item = menuEquivalent(input.pid(), *character, keys.flags);
  requireKeyWindow(keyWindow, input);
  return item;
}

std::optional<quartz::Event> createKey(std::uint16_t code, bool down, std::uint64_t flags) {
  std::optional<quartz::Event> event = quartz::createKeyboardEvent(code, down);
  if (event) quartz::setFlags(*event, flags);
  return event;
}

/// The events of one combination, in their order: the first half presses.
using Events = std::deque<std::optional<quartz::Event>>;

// As fingers do it: each modifier goes down before the key and up after it, the last one first. All
// events carry all flags, since receivers look at those and not at what was held before.
Events eventsOf(const KeyCombination& keys) {
  Events events;
  events.push_back(createKey(keys.code, true, keys.flags));
  events.push_back(createKey(keys.code, false, keys.flags));
  for (auto modifier = modifierKeys.rbegin(); modifier != modifierKeys.rend(); ++modifier) {
    if (!hasModifier(keys.flags, modifier->flag)) continue;
    events.push_front(createKey(modifier->code, true, keys.flags));
    events.push_back(createKey(modifier->code, false, keys.flags));
  }
  // What goes down must come up: when one of them is missing, none is left.
  const bool isWhole = std::all_of(events.begin(), events.end(),
                                   [](const auto& event) { return event.has_value(); });
  if (!isWhole) std::for_each(events.begin(), events.end(), [](auto& event) { event.reset(); });
  return events;
}

/// What must hold when something is pressed. Throws InputFailure when it does not.
using Condition = std::function<void()>;

/// Why the key may not follow its modifiers, which are down; null when it may. An application that
/// hangs is waited for: a process that ends meanwhile lets them go by `releases`.
std::exception_ptr objection(const Events& releases, const KeyboardInput& input,
                             const Condition& require) {
  pushUndo([releases, pid = input.pid()] {
    for (const auto& release : releases) postRelease(release, pid);
  });
  std::exception_ptr failure;
  try {
    input.requireKeyboard();
    require();
  } catch (const InputFailure&) {
    failure = std::current_exception();
  }
  forgetNewestUndo();
  return failure;
}

/// True when the key itself was posted.
bool postKeys(const KeyCombination& keys, const KeyboardInput& input, const Condition& require) {
  const Events events = eventsOf(keys);
  const auto key = events.begin() + static_cast<std::ptrdiff_t>(events.size() / 2 - 1);
  input.requireKeyboard();
  require();
  Press press(input.pid());
  std::for_each(events.begin(), key, [&](const auto& event) { press.down(event); });
  // The modifiers took their time. By themselves they do nothing, wherever they go.
  const bool follows = key != events.begin() && !isEnding();
  const std::exception_ptr withheld =
      follows ? objection({key + 2, events.end()}, input, require) : nullptr;
  const bool isPosted = !withheld && press.down(*key);
  std::for_each(withheld ? key + 2 : key + 1, events.end(),
                [&](const auto& event) { press.up(event); });
  if (withheld) std::rethrow_exception(withheld);
  return isPosted;
}

// A press is input as an event is, and is withheld as one: a command of the menu acts on the window
// that has the keyboard. True when it was pressed.
bool pressMenuItem(const ax::Element& item, const std::string& combination,
                   const KeyboardInput& input, const Condition& require) {
  input.requireKeyboard();
  require();
  if (!mayActNow()) return false;
  if (messages::perform(item, "AXPress") != ax::Error::success) {
    throw InputFailure("target menu shortcut failed: " + combination);
  }
  loop::sleepMicroseconds(menuPauseMicroseconds);
  return true;
}

}  // namespace

KeyCombination keyCombination(const std::string& combination) {
  const std::string folded = text::lowercase(combination);
  std::optional<std::uint16_t> code;
  std::uint64_t flags = 0;
  std::string_view rest = folded;
  while (!rest.empty()) {
    const std::string_view piece = rest.substr(0, rest.find('+'));
    rest.remove_prefix(piece.size() == rest.size() ? piece.size() : piece.size() + 1);
    if (piece.empty()) continue;
    if (const auto modifier = modifierNamed(piece)) {
      flags |= static_cast<std::uint64_t>(*modifier);
    } else if (const auto named = keyCodeNamed(piece)) {
      code = named;
    } else {
      throw InputFailure("unknown key: " + std::string(piece));
    }
  }
  if (!code) throw InputFailure("no key in combo: " + combination);
  return {*code, flags};
}

bool key(const std::string& combination, const KeyboardInput& input,
         const std::function<void()>& require) {
  const KeyCombination keys = keyCombination(combination);
  // The item is surer than its keys: it can be pressed whatever has the application's keyboard. A
  // combination without command is text, or the application's own, and stays keys.
  if (hasModifier(keys.flags, quartz::Modifier::command)) {
    if (const auto item = itemInPlaceOf(keys, input)) {
      return pressMenuItem(*item, combination, input, require);
    }
  }
  return postKeys(keys, input, require);
}

}  // namespace driver
