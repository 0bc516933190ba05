#include "simulator/input/posted_pointer.h"

#include <array>
#include <cmath>
#include <utility>

#include "simulator/input/key_window.h"
#include "simulator/input/menu_tracking.h"
#include "simulator/input/posted_keys.h"
#include "simulator/world/elements.h"
#include "simulator/world/presses.h"
#include "simulator/world/scrolling.h"
#include "simulator/world/utf16_text.h"

namespace simulator {

using platform::EventImage;
using quartz::EventType;
using quartz::Field;

namespace {

constexpr const char* notUsable = "the session is locked or not on the console";
constexpr Point offScreen{-1, -1};
constexpr std::int64_t touchSubtype = 3;
constexpr std::int64_t clickEventNumber = 3;

/// The events that come before any press in a click group. Nothing documents what an application
/// makes of them. A click is known to be taken behind exactly these: nothing less does here.
struct PrimingStep {
  EventType type;
  bool located;
  std::int64_t clickState;
  std::int64_t eventNumber;
};

constexpr std::array<PrimingStep, 4> primingSteps = {{
    {EventType::mouseMoved, false, 0, 2},
    {EventType::leftMouseDown, false, 1, 1},
    {EventType::leftMouseUp, false, 1, 2},
    {EventType::mouseMoved, true, 0, 2},
}};

bool isRight(EventType type) {
  return type == EventType::rightMouseDown || type == EventType::rightMouseUp;
}

/// The button that an event of a click is about. A move has it in its field alone.
std::int64_t buttonOf(const EventImage& event) {
  if (typeOf(event) == EventType::mouseMoved) return fieldOf(event, Field::buttonNumber);
  return isRight(typeOf(event)) ? 1 : 0;
}

std::string nameOf(std::uint32_t type) {
  switch (static_cast<EventType>(type)) {
    case EventType::leftMouseDown:
      return "left-down";
    case EventType::leftMouseUp:
      return "left-up";
    case EventType::rightMouseDown:
      return "right-down";
    case EventType::rightMouseUp:
      return "right-up";
    case EventType::mouseMoved:
      return "moved";
    case EventType::scrollWheel:
      return "scroll";
    default:
      return "type-" + std::to_string(type);
  }
}

/// Everything one posting is judged by.
struct Delivery {
  Mac& mac;
  Application& application;
  const EventImage& event;
  Route route;
  Window* window = nullptr;

  bool chromium() const { return application.kind == ApplicationKind::chromium; }

  /// Whether the event is at a point of the window. The window may lie at the very point that
  /// stands for off screen: then what is due decides.
  bool located() const {
    if (event.location != offScreen) return true;
    const bool due = fieldOf(event, Field::mouseEventNumber) == clickEventNumber ||
                     application.click.primingSteps + 1 == primingSteps.size();
    return due && window != nullptr && contains(window->frame, offScreen);
  }

  Point windowLocal() const {
    return {event.location.x - window->frame.x, event.location.y - window->frame.y};
  }
};

bool routeTaken(const Delivery& delivery) {
  const EventType type = typeOf(delivery.event);
  const bool isPrivate = delivery.route == Route::privateRoute;
  const bool move = type == EventType::mouseMoved &&
                    fieldOf(delivery.event, Field::mouseEventNumber) == clickEventNumber;
  if (type == EventType::scrollWheel) return isPrivate == delivery.chromium();
  if (move) return isPrivate != delivery.chromium();
  if (!delivery.chromium()) return isPrivate;
  if (!delivery.located()) return true;  // an off-screen event reaches Chromium by both
  return isPrivate == (buttonOf(delivery.event) == 1);
}

Point expectedWindowLocation(const Delivery& delivery) {
  if (!delivery.located()) return offScreen;
  const bool local = delivery.chromium() || typeOf(delivery.event) == EventType::scrollWheel;
  return local ? delivery.windowLocal() : delivery.event.location;
}

std::string fieldFault(const Delivery& delivery) {
  const std::int64_t window = delivery.window->number;
  const std::array<std::pair<Field, std::int64_t>, 5> expected = {{
      {Field::mouseSubtype, touchSubtype},
      {Field::targetProcess, delivery.application.pid},
      {Field::targetWindow, window},
      {Field::windowUnderPointer, window},
      {Field::windowThatCanHandle, window},
  }};
  for (const auto& [field, value] : expected) {
    const std::int64_t actual = fieldOf(delivery.event, field);
    if (actual != value) {
      return "field " + std::to_string(static_cast<int>(field)) + " is " + std::to_string(actual) +
             ", not " + std::to_string(value);
    }
  }
  return "";
}

/// Why the window server does not route the event to its window; empty when it does.
std::string routingFault(Delivery& delivery) {
  const EventImage& event = delivery.event;
  const auto number = static_cast<WindowNumber>(fieldOf(event, Field::targetWindow));
  delivery.window = findWindow(delivery.mac.world, number);
  if (delivery.window == nullptr || delivery.window->owner != delivery.application.pid) {
    return "field 51 names no window of the application";
  }
  if (!delivery.window->onScreen) return "the window is not on screen";
  if (std::string fault = fieldFault(delivery); !fault.empty()) return fault;
  if (event.flags != 0) return "modifier flags were not cleared";
  if (delivery.located() && !contains(delivery.window->frame, event.location)) {
    return "the point is outside the window";
  }
  if (!event.windowLocation || *event.windowLocation != expectedWindowLocation(delivery)) {
    return "wrong window location";
  }
  if (!routeTaken(delivery)) return "wrong route";
  return "";
}

/// The click off screen is a left one; the move to the point announces the button that follows.
bool matches(const PrimingStep& step, const Delivery& delivery) {
  const EventImage& event = delivery.event;
  const std::int64_t button = fieldOf(event, Field::buttonNumber);
  return typeOf(event) == step.type && delivery.located() == step.located &&
         fieldOf(event, Field::clickState) == step.clickState &&
         fieldOf(event, Field::mouseEventNumber) == step.eventNumber &&
         (button == 0 || (step.located && button == 1));
}

Landing takePress(Delivery& delivery, ClickProgress& progress) {
  const EventImage& event = delivery.event;
  const EventType type = typeOf(event);
  const std::int64_t state = fieldOf(event, Field::clickState);
  if (!delivery.located()) return refused("a press off screen after the priming events");
  if (fieldOf(event, Field::mouseEventNumber) != clickEventNumber) {
    return refused("wrong event number");
  }
  if (fieldOf(event, Field::buttonNumber) != buttonOf(event)) return refused("wrong button number");
  if (buttonOf(event) != progress.button) {
    return refused("another button than the priming events announced");
  }
  if (isPress(event)) {
    if (progress.pressedType) return refused("a second press without a release");
    if (state != progress.clickState + 1) return refused("wrong click state");
    progress.pressedType = event.type;
    progress.pressedBy = delivery.mac.world.actor;
    progress.clickState = state;
    return {true, "press"};
  }
  if (progress.pressedType != event.type - 1) return refused("a release without its press");
  if (state != progress.clickState) return refused("wrong click state");
  progress.pressedType.reset();
  return {true, click(delivery.mac.world, delivery.application.pid, delivery.window->number,
                      event.location, isRight(type), state)};
}

/// One event of a click group.
Landing takeClickStep(Delivery& delivery) {
  ClickProgress& progress = delivery.application.click;
  const std::int64_t group = fieldOf(delivery.event, Field::clickGroup);
  if (progress.group != group) progress = ClickProgress{group, 0, 0, std::nullopt, 0};
  if (progress.primingSteps < primingSteps.size()) {
    if (!matches(primingSteps[progress.primingSteps], delivery)) {
      return refused("the priming events did not come first in its click group");
    }
    ++progress.primingSteps;
    progress.button = fieldOf(delivery.event, Field::buttonNumber);
    return {true, "priming"};
  }
  // Assumed: AppKit keeps a first click into an inactive application for itself, Chromium passes it
  // on.
  const bool focused = delivery.application.focusByRecord != 0 ||
                       delivery.mac.world.frontmost == delivery.application.pid;
  if (!delivery.chromium() && !focused) return refused("the application holds no focus");
  return takePress(delivery, progress);
}

Landing takeMotion(Delivery& delivery) {
  if (typeOf(delivery.event) == EventType::scrollWheel) {
    const Point lines{static_cast<double>(delivery.event.horizontal),
                      static_cast<double>(delivery.event.vertical)};
    const ElementId hit =
        elementAt(delivery.application, *delivery.window, delivery.event.location);
    auto said = scrollOver(delivery.application, hit, lines);
    if (said) return {true, std::move(*said)};
    delivery.window->scrolledLines.x += delivery.event.horizontal;
    delivery.window->scrolledLines.y += delivery.event.vertical;
    return {true, "scrolled"};
  }
  delivery.window->hover = delivery.event.location;
  return {true, "pointer over the window"};
}

Landing route(Delivery& delivery) {
  const EventType type = typeOf(delivery.event);
  const bool motion = type == EventType::scrollWheel ||
                      (type == EventType::mouseMoved &&
                       fieldOf(delivery.event, Field::mouseEventNumber) == clickEventNumber);
  std::string fault = routingFault(delivery);
  if (motion) return fault.empty() ? takeMotion(delivery) : refused(std::move(fault));
  Landing landing = fault.empty() ? takeClickStep(delivery) : refused(std::move(fault));
  // A click group with a wrong event in it is broken: nothing more of it lands.
  if (!landing.landed) delivery.application.click.primingSteps = 0;
  return landing;
}

/// The application takes the event, or keeps it for later. `sameOperation`: it has come by the
/// other route before.
Landing take(Mac& mac, Application& application, const EventImage& event, Route by,
             bool sameOperation) {
  if (waitsForMenu(mac.world, application, event)) {
    application.waiting.push_back({event, by == Route::privateRoute, mac.world.actor});
    return refused("waits until a menu has closed");
  }
  if (isKeyEvent(event)) return takeKeyEvent(mac.world, application, event, by);
  Delivery delivery{mac, application, event, by, nullptr};
  // Events off screen are posted by each route for Chromium: the second posting of one that was
  // taken changes nothing.
  if (sameOperation && application.lastPostTaken && routeTaken(delivery)) {
    return {true, "already taken by the other route"};
  }
  const Pid pid = application.pid;
  Landing landing = route(delivery);
  // The event may have made the application quit.
  if (Application* still = findApplication(mac.world, pid)) still->lastPostTaken = landing.landed;
  return landing;
}

Landing receive(Mac& mac, Pid pid, const EventImage& event, Route by) {
  if (!mac.world.session.isUsable()) return refused(notUsable);
  Application* application = findApplication(mac.world, pid);
  if (application == nullptr) return refused("no such application");
  if (!mac.world.accessibilityAllowed) return refused("posting is not permitted");
  const bool sameOperation = event.identity == application->lastPostIdentity;
  const bool tooSoon = sameOperation ? application->lastPostTooSoon
                                     : application->lastPost.has_value() &&
                                           mac.now - *application->lastPost < paceMin;
  // An event that was dropped counts too: who posts without a pause gets nothing through.
  application->lastPost = mac.now;
  application->lastPostTooSoon = tooSoon;
  application->lastPostIdentity = event.identity;
  if (tooSoon) return refused("came less than 12 ms after the one before");
  return take(mac, *application, event, by, sameOperation);
}

/// An event that has waited for a menu arrives, whenever it was posted.
Landing receiveLate(Mac& mac, Pid pid, const EventImage& event, Route by) {
  Application* application = findApplication(mac.world, pid);
  if (application == nullptr) return refused("no such application");
  if (!mac.world.session.isUsable()) return refused(notUsable);
  const bool sameOperation = event.identity == application->lastPostIdentity;
  application->lastPostIdentity = event.identity;
  return take(mac, *application, event, by, sameOperation);
}

/// What has the keyboard, or what is under the pointer: before the event comes, which may change
/// it.
std::optional<ElementName> meantElement(World& world, Pid pid, WindowNumber number,
                                        const EventImage& event) {
  Application* application = findApplication(world, pid);
  const Window* window = findWindow(world, number);
  if (application == nullptr || window == nullptr || window->owner != pid) return std::nullopt;
  const Element* element =
      isKeyEvent(event)
          ? keyboardField(world, *application)
          : findElement(*application, elementAt(*application, *window, event.location));
  if (element == nullptr) return std::nullopt;
  return elementName(*element);
}

/// What the journal says of an event that comes now; what came of it is still to be said.
JournalEntry entryOf(Mac& mac, Pid pid, const EventImage& event, Route by) {
  JournalEntry entry{.at = mac.now, .kind = JournalEntry::Kind::event, .target = pid};
  entry.route = by == Route::privateRoute ? "private" : "public";
  if (isKeyEvent(event)) {
    const Application* application = findApplication(mac.world, pid);
    entry.window = application == nullptr ? 0 : keyWindowOf(*application);
    entry.what = nameOfKeyEvent(event);
    entry.text = utf8Of(unitsOf(event.text));
  } else {
    entry.window = static_cast<WindowNumber>(fieldOf(event, Field::targetWindow));
    entry.what = nameOf(event.type);
    entry.point = event.location;
  }
  entry.element = meantElement(mac.world, pid, entry.window, event);
  return entry;
}

void note(Mac& mac, JournalEntry entry, Landing landing) {
  entry.landed = landing.landed;
  entry.outcome = std::move(landing.outcome);
  enter(mac, std::move(entry));
}

void deliverAgain(Mac& mac, Pid pid, const WaitingEvent& waiting) {
  const Route by = waiting.isPrivate ? Route::privateRoute : Route::publicRoute;
  JournalEntry entry = entryOf(mac, pid, waiting.event, by);
  note(mac, std::move(entry), receiveLate(mac, pid, waiting.event, by));
}

}  // namespace

void deliver(Mac& mac, Pid pid, const EventImage& event, Route by) {
  JournalEntry entry = entryOf(mac, pid, event, by);
  note(mac, std::move(entry), receive(mac, pid, event, by));
}

void letWaitingInputGoOn(Mac& mac) {
  for (std::size_t i = 0; i < mac.world.applications.size(); ++i) {
    Application& application = mac.world.applications[i];
    if (application.waiting.empty() || isTrackingMenu(application)) continue;
    const Pid actor = mac.world.actor;
    for (const WaitingEvent& each : std::exchange(application.waiting, {})) {
      mac.world.actor = each.actor;
      deliverAgain(mac, application.pid, each);
    }
    mac.world.actor = actor;
  }
}

}  // namespace simulator
