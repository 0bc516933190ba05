#include "simulator/text/soundness.h"

#include <algorithm>
#include <string>

#include "simulator/world/sight.h"

namespace simulator {

namespace {

/// What names an element within its application: none, or one that there is or was.
class Ids {
 public:
  Ids(const Words& words, const Application& application)
      : words_(words), application_(application) {}

  void check(ElementId id) const {
    const bool isOne = id >= 0 && static_cast<std::size_t>(id) <= application_.elements.size();
    if (!isOne) fail(id);
  }
  void checkWithCopies(ElementId id) const {
    const auto& copies = application_.copies;
    const bool isCopy = std::any_of(copies.begin(), copies.end(), [&](const Copies& each) {
      return id >= each.first && id - each.first < each.count;
    });
    if (!isCopy) check(id);
  }
  void check(const std::vector<ElementId>& ids) const {
    for (const ElementId id : ids) check(id);
  }

 private:
  [[noreturn]] void fail(ElementId id) const {
    words_.fail("process " + std::to_string(application_.pid) + " has no element " +
                std::to_string(id));
  }

  const Words& words_;
  const Application& application_;
};

/// From each element `next` leads on to others, and at last to none.
template <class Next>
void checkWays(const Words& words, const Application& application, Next next) {
  // Whoever is met again on the way up from one is in a circle; who was met before has been tried.
  std::vector<ElementId> metFrom(application.elements.size() + 1, 0);
  for (const Element& element : application.elements) {
    ElementId each = element.id;
    while (each != 0 && metFrom[static_cast<std::size_t>(each)] == 0) {
      metFrom[static_cast<std::size_t>(each)] = element.id;
      each = next(application.elements[static_cast<std::size_t>(each) - 1]);
    }
    const bool isCircle = each != 0 && metFrom[static_cast<std::size_t>(each)] == element.id;
    if (isCircle) words.fail("element " + std::to_string(each) + " is in itself");
  }
}

void checkElements(const Words& words, const Application& application, const Ids& ids) {
  for (const Element& element : application.elements) {
    for (const ElementId child : element.children) ids.checkWithCopies(child);
    for (const ElementId id : {element.parent, element.dependsOn, element.scrolledBy}) {
      ids.check(id);
    }
  }
  for (const Element& element : application.elements) {
    const bool isInArea = element.scrolledBy == 0 || element.removed ||
                          findScrollArea(application, element.scrolledBy) != nullptr;
    if (!isInArea) words.fail("element " + std::to_string(element.id) + " scrolls in nothing");
  }
  checkWays(words, application, [](const Element& each) { return each.parent; });
  checkWays(words, application, [](const Element& each) { return each.scrolledBy; });
  checkWays(words, application, [&](const Element& each) {
    return each.parent == 0
               ? 0
               : application.elements[static_cast<std::size_t>(each.parent) - 1].dependsOn;
  });
}

void checkApplication(const Words& words, const Application& application) {
  const Ids ids(words, application);
  constexpr std::int64_t copiesOfOneMax = 1'000'000;
  for (const Copies& copies : application.copies) {
    ids.check(copies.original);
    const bool isPlausible = copies.first >= firstCopy && copies.first < 2 * firstCopy &&
                             copies.count >= 0 && copies.count <= copiesOfOneMax &&
                             copies.original != 0;
    if (!isPlausible) words.fail("these are copies of none");
  }
  checkElements(words, application, ids);
  ids.check(application.windows);
  for (const ElementId id :
       {application.openMenu, application.focusedWindow, application.focusedElement}) {
    ids.check(id);
  }
  for (const auto& [id, habits] : application.habits) ids.check(id);
  for (const ScrollArea& area : application.scrollAreas) {
    ids.check({area.id, area.verticalBar, area.horizontalBar});
    const Element* element = findElement(application, area.id);
    const bool canScroll =
        element == nullptr || (element->frame && driver::isFinite(*element->frame));
    if (area.id == 0 || !canScroll) words.fail("what scrolls needs a frame");
  }
}

[[noreturn]] void failWithout(const Words& words, Pid pid) {
  words.fail("there is no process " + std::to_string(pid));
}

void checkWindows(const Words& words, const World& world) {
  for (const Window& window : world.windows) {
    const Window* each = &window;
    for (std::size_t steps = 0; each != nullptr && each->sheetOf != 0; ++steps) {
      if (steps > world.windows.size()) {
        words.fail("window " + std::to_string(window.number) + " is a sheet of itself");
      }
      each = findWindow(world, each->sheetOf);
    }
    const Application* owner = findApplication(world, window.owner);
    if (owner == nullptr) failWithout(words, window.owner);
    Ids(words, *owner).check({window.element, window.hadKeyboard});
  }
}

const Application* applicationWith(const World& world, Pid pid) {
  const auto found = std::find_if(world.applications.begin(), world.applications.end(),
                                  [&](const Application& each) { return each.pid == pid; });
  return found == world.applications.end() ? nullptr : &*found;
}

void checkComing(const Words& words, const World& world) {
  const auto check = [&](Pid pid, ElementId element) {
    const Application* application = applicationWith(world, pid);
    if (application == nullptr) failWithout(words, pid);
    Ids(words, *application).check(element);
  };
  for (const DueReaction& each : world.due) {
    check(each.pid, each.element);
    if (each.reaction.effect == nullptr) words.fail("a reaction is missing");
  }
  for (const PendingWrite& each : world.pending) check(each.pid, each.element);
}

/// Numbers go on from here, and times are compared: there must be room.
void checkNumbers(const Words& words, const World& world) {
  constexpr std::int64_t most = 1'000'000'000'000'000;
  constexpr std::size_t processesMax = 10'000'000;
  const auto check = [&](std::int64_t number) {
    if (number < -most || number > most) words.fail("a number is beyond 1,000,000,000,000,000");
  };
  check(world.pasteboard.changeCount);
  if (world.lastClick) check(world.lastClick->state);
  for (const auto& [type, time] : world.activity.lastTimes) check(time);
  const Resumption resumption = world.resumption.value_or(Resumption());
  check(resumption.numbers);
  check(resumption.lastSerial);
  if (resumption.processes > processesMax) words.fail("more than 10,000,000 processes have joined");
}

}  // namespace

void checkSoundness(const Words& words, const World& world) {
  for (const Application& each : world.applications) checkApplication(words, each);
  checkWindows(words, world);
  checkComing(words, world);
  checkNumbers(words, world);
  const bool isFrontRunning =
      world.frontmost == 0 || findApplication(world, world.frontmost) != nullptr;
  if (!isFrontRunning) failWithout(words, world.frontmost);
}

}  // namespace simulator
