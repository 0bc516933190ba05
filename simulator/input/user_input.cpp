#include "simulator/input/user_input.h"

#include <cmath>
#include <iterator>
#include <utility>

#include "simulator/input/key_presses.h"
#include "simulator/input/menu_tracking.h"
#include "simulator/world/elements.h"
#include "simulator/world/keyboard_layouts.h"
#include "simulator/world/presses.h"
#include "simulator/world/scrolling.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace {

// Event types as the platform has them; the release of a button follows its press.
constexpr std::uint32_t leftDown = 1;
constexpr std::uint32_t leftUp = 2;
constexpr std::uint32_t rightDown = 3;
constexpr std::uint32_t rightUp = 4;
constexpr std::uint32_t moved = 5;
constexpr std::uint32_t leftDragged = 6;
constexpr std::uint32_t rightDragged = 7;
constexpr std::uint32_t keyDown = 10;
constexpr std::uint32_t keyUp = 11;
constexpr std::uint32_t flagsChanged = 12;
constexpr std::uint32_t scrolled = 22;
constexpr std::uint32_t otherDown = 25;
constexpr std::uint32_t otherUp = 26;
constexpr std::uint32_t otherDragged = 27;

/// The time within which a second click must follow, as the system has it at first.
constexpr Microseconds doubleClickTime = 500'000;

constexpr std::int64_t ownEventTag = 0x5A545256;

struct Button {
  std::uint32_t down;
  std::uint32_t up;
  std::uint32_t dragged;
};

Button typesOf(MouseButton button) {
  switch (button) {
    case MouseButton::left:
      break;
    case MouseButton::right:
      return {rightDown, rightUp, rightDragged};
    case MouseButton::other:
      return {otherDown, otherUp, otherDragged};
  }
  return {leftDown, leftUp, leftDragged};
}

/// What the user presses for a character, or for an accent that waits for its letter.
std::optional<KeyStroke> strokeOf(const Keyboard& keyboard, const std::string& key) {
  const auto dead = keyboard.hasDeadKeys ? deadStrokeFor(keyboard.layout, key) : std::nullopt;
  return dead ? dead : strokeFor(keyboard.layout, key);
}

/// Turns what the user does into events, one after the other.
class Maker {
 public:
  Maker(World& world, const Happening& happening) : world_(world), happening_(happening) {}

  InputEvent& add(std::uint32_t type, std::int64_t keyCode = 0) {
    if (!happening_.tagged) world_.activity.lastTimes[type] = world_.present;
    InputEvent& input = events_.emplace_back();
    input.event.type = type;
    input.event.location = world_.pointer;
    input.event.flags = world_.keyboard.modifiers;
    input.event.keyCode = keyCode;
    input.event.sourceUserData = happening_.tagged ? ownEventTag : 0;
    input.event.targetProcess = happening_.addressee;
    return input;
  }

  void move(std::uint32_t type, Point point) {
    const Point before = std::exchange(world_.pointer, point);
    InputEvent& input = add(type);
    input.event.deltaX = std::llround(point.x - before.x);
    input.event.deltaY = std::llround(point.y - before.y);
  }

  void setModifier(const ModifierKey& key, bool down) {
    std::uint64_t& held = world_.keyboard.modifiers;
    held = down ? held | key.flag : held & ~key.flag;
    add(flagsChanged, key.code);
  }

  void addKey() {
    const std::string& key = happening_.text;
    const auto named = codeNamed(key);
    const auto stroke = named ? std::nullopt : strokeOf(world_.keyboard, key);
    std::uint64_t needed = happening_.modifiers;
    if (stroke && stroke->shift) needed |= shiftFlag;
    needed &= ~world_.keyboard.modifiers;
    for (const ModifierKey& modifier : modifierKeys) {
      if ((needed & modifier.flag) != 0) setModifier(modifier, true);
    }
    const std::int64_t code = named ? *named : stroke ? stroke->code : 0;
    InputEvent& down = add(keyDown, code);
    // What no key has comes by other means, under some code.
    if (!named && !stroke) down.text = key;
    add(keyUp, code);
    for (auto modifier = std::rbegin(modifierKeys); modifier != std::rend(modifierKeys);
         ++modifier) {
      if ((needed & modifier->flag) != 0) setModifier(*modifier, false);
    }
  }

  /// Presses a button and lets it go, elsewhere when it drags.
  void addClick(bool drags) {
    const Button types = typesOf(happening_.button);
    if (world_.pointer != happening_.point) move(moved, happening_.point);
    add(types.down);
    if (drags) move(types.dragged, happening_.end);
    add(types.up);
  }

  void addModifiers(bool down) {
    for (const ModifierKey& key : modifierKeys) {
      if ((happening_.modifiers & key.flag) != 0) setModifier(key, down);
    }
  }

  std::vector<InputEvent> take() { return std::move(events_); }

 private:
  World& world_;
  const Happening& happening_;
  std::vector<InputEvent> events_;
};

void hover(World& world, Point point) {
  const Window* under = topmostAt(world, point);
  for (Window& window : world.windows) {
    if (window.owner != world.frontmost) continue;
    window.hover = &window == under ? std::optional(point) : std::nullopt;
  }
}

constexpr const char* noWindowThere = "there is no window";

/// A sentence about what came to an application.
std::string toldOf(const Application& application, const std::string& sentence) {
  return application.name.value_or("pid:" + std::to_string(application.pid)) + ": " + sentence;
}

std::string pressButton(World& world, std::uint32_t type, Point point) {
  world.heldButtons[type] = {};
  if (std::string closed = closeTrackedMenu(world, point); !closed.empty()) return closed;
  const Window* window = topmostAt(world, point);
  const Application* owner = window == nullptr ? nullptr : findApplication(world, window->owner);
  if (owner == nullptr) return noWindowThere;
  world.heldButtons[type].window = window->number;
  if (owner->policy != workspace::ActivationPolicy::prohibited) world.frontmost = owner->pid;
  raiseWindow(world, window->number);
  return "";
}

/// How many clicks of the left button have followed each other in this place, with this one.
std::int64_t countClick(World& world, Point point) {
  const auto& last = world.lastClick;
  const bool follows = last && last->point == point && world.present - last->at <= doubleClickTime;
  const std::int64_t state = follows ? last->state + 1 : 1;
  world.lastClick = UserClick{world.present, point, state};
  return state;
}

/// A button that went down and up in the same place has clicked.
std::string releaseButton(World& world, std::uint32_t type, Point point) {
  const auto held = world.heldButtons.find(type - 1);
  if (held == world.heldButtons.end()) return "";
  const HeldButton button = held->second;
  world.heldButtons.erase(held);
  const Window* window = findWindow(world, button.window);
  if (window == nullptr || button.dragged || type == otherUp) return "";
  if (!driver::contains(window->frame, point)) return "";
  const Application* owner = findApplication(world, window->owner);
  const std::string name = owner == nullptr ? "" : toldOf(*owner, "");
  const std::int64_t state = type == leftUp ? countClick(world, point) : 1;
  return name + click(world, window->owner, window->number, point, type == rightUp, state);
}

void drag(World& world, Point point) {
  for (auto& [type, button] : world.heldButtons) button.dragged = true;
  hover(world, point);
}

std::string scroll(World& world, const InputEvent& input) {
  Window* window = topmostAt(world, input.event.location);
  if (window == nullptr) return noWindowThere;
  Application* owner = findApplication(world, window->owner);
  if (owner != nullptr) {
    const ElementId hit = elementAt(*owner, *window, input.event.location);
    const auto said = scrollOver(*owner, hit, input.scrolledLines);
    if (said) return toldOf(*owner, *said);
  }
  window->scrolledLines.x += input.scrolledLines.x;
  window->scrolledLines.y += input.scrolledLines.y;
  return "scrolled window " + std::to_string(window->number);
}

std::string takeUserKey(World& world, const InputEvent& input) {
  Application* front = findApplication(world, world.frontmost);
  if (front == nullptr) return "no application is in front";
  const std::string name = toldOf(*front, "");
  const std::int64_t code = input.event.keyCode;
  if (isTrackingMenu(*front) && modifierWithCode(code) == nullptr) {
    return name + takeKeyInMenu(*front, code);
  }
  return name + takeKey(world, *front, {input.event.keyCode, input.event.flags, input.text});
}

const char* pointerName(std::uint32_t type) {
  switch (type) {
    case leftDown:
      return "left-down";
    case leftUp:
      return "left-up";
    case rightDown:
      return "right-down";
    case rightUp:
      return "right-up";
    case otherDown:
      return "other-down";
    case otherUp:
      return "other-up";
    case leftDragged:
    case rightDragged:
    case otherDragged:
      return "dragged";
    case scrolled:
      return "scroll";
    default:
      return "moved";
  }
}

}  // namespace

std::vector<InputEvent> keyInput(World& world, const Happening& happening) {
  Maker maker(world, happening);
  maker.addKey();
  return maker.take();
}

std::vector<InputEvent> clickInput(World& world, const Happening& happening) {
  Maker maker(world, happening);
  maker.addClick(false);
  return maker.take();
}

std::vector<InputEvent> dragInput(World& world, const Happening& happening) {
  Maker maker(world, happening);
  maker.addClick(true);
  return maker.take();
}

std::vector<InputEvent> moveInput(World& world, const Happening& happening) {
  Maker maker(world, happening);
  maker.move(moved, happening.point);
  return maker.take();
}

std::vector<InputEvent> scrollInput(World& world, const Happening& happening) {
  Maker maker(world, happening);
  maker.add(scrolled).scrolledLines = happening.point;
  return maker.take();
}

std::vector<InputEvent> pressInput(World& world, const Happening& happening) {
  Maker maker(world, happening);
  maker.addModifiers(true);
  return maker.take();
}

std::vector<InputEvent> releaseInput(World& world, const Happening& happening) {
  Maker maker(world, happening);
  maker.addModifiers(false);
  return maker.take();
}

bool reachesApplications(const World& world) { return world.session.isUsable(); }

bool hasSecureInput(const World& world) {
  const Application* front = findApplication(world, world.frontmost);
  const Element* focused = front == nullptr ? nullptr : findElement(*front, front->focusedElement);
  return focused != nullptr && isSecure(*focused);
}

std::string takeInput(World& world, const InputEvent& input) {
  if (!reachesApplications(world)) return "";
  const Point point = input.event.location;
  switch (input.event.type) {
    case keyDown:
      return takeUserKey(world, input);
    case moved:
      hover(world, point);
      break;
    case leftDragged:
    case rightDragged:
    case otherDragged:
      drag(world, point);
      break;
    case leftDown:
    case rightDown:
    case otherDown:
      return pressButton(world, input.event.type, point);
    case leftUp:
    case rightUp:
    case otherUp:
      return releaseButton(world, input.event.type, point);
    case scrolled:
      return scroll(world, input);
    default:
      break;
  }
  return "";
}

std::string nameOfInput(const InputEvent& input) {
  const tap::Event& event = input.event;
  const std::string with = event.flags == 0 ? "" : " with " + modifierNames(event.flags);
  switch (event.type) {
    case keyDown:
      return "key-down " + std::to_string(event.keyCode) + with;
    case keyUp:
      return "key-up " + std::to_string(event.keyCode) + with;
    case flagsChanged:
      return "flags" + with;
    default:
      return pointerName(event.type);
  }
}

}  // namespace simulator
