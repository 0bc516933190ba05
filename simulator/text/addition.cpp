#include "simulator/text/addition.h"

#include <set>

#include "simulator/text/builder.h"
#include "simulator/text/expansion.h"
#include "simulator/text/line_reader.h"
#include "simulator/world/elements.h"
#include "simulator/world/scrolling.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace {

const Definitions& definitionsOf(const World& world) {
  static const Definitions none;
  return world.definitions == nullptr ? none : *world.definitions;
}

/// Reads what the call says at a place of the world.
void readBody(World& world, const Call& call, const WorldBuilder::Place& place) {
  const Complain complain = [](const Complaint& complaint) { throw WorldError(complaint); };
  WorldBuilder builder(world, complain);
  LineReader reader(builder, complain, place);
  expandCall(definitionsOf(world), call, [&](const Line& line) { reader.read(line); });
  builder.settleElements();
}

/// The windows of a Mac, and what has an application's keyboard, before others come. That belongs
/// to nothing then, so that a line may say what has it.
class WindowsBefore {
 public:
  WindowsBefore(const World& world, Application& application)
      : world_(world),
        application_(application),
        window_(application.focusedWindow),
        element_(application.focusedElement) {
    for (const Window& each : world.windows) numbers_.insert(each.number);
    application.focusedWindow = application.focusedElement = 0;
  }

  /// In the order of their numbers.
  std::vector<WindowNumber> since() const {
    std::set<WindowNumber> numbers;
    for (const Window& each : world_.windows) {
      if (numbers_.count(each.number) == 0) numbers.insert(each.number);
    }
    return {numbers.begin(), numbers.end()};
  }

  void restore() const {
    application_.focusedWindow = window_;
    application_.focusedElement = element_;
  }

 private:
  const World& world_;
  Application& application_;
  ElementId window_;
  ElementId element_;
  std::set<WindowNumber> numbers_;
};

}  // namespace

std::vector<ElementId> addDefined(World& world, std::size_t application, ElementId parent,
                                  const Call& call) {
  Application& owner = world.applications[application];
  const Element& around = *findElement(owner, parent);
  const std::size_t count = around.children.size();
  const auto latest = static_cast<ElementId>(owner.elements.size());
  const auto added = [&]() -> std::vector<ElementId> {
    const auto& children = findElement(owner, parent)->children;
    return {children.begin() + static_cast<std::ptrdiff_t>(count), children.end()};
  };
  try {
    readBody(world, call,
             {WorldBuilder::Place::Kind::element, "element", application, around.window, parent});
  } catch (const WorldError&) {
    for (const ElementId id : added()) removeElement(owner, id);
    throw;
  }
  settleScrollAreas(owner, latest);
  return added();
}

std::vector<WindowNumber> openDefined(World& world, std::size_t application, const Call& call) {
  Application& owner = world.applications[application];
  const auto latest = static_cast<ElementId>(owner.elements.size());
  const WindowsBefore before(world, owner);
  try {
    readBody(world, call, {WorldBuilder::Place::Kind::application, "app", application, 0, 0});
  } catch (const WorldError&) {
    for (const WindowNumber number : before.since()) closeWindow(world, number);
    for (auto id = latest + 1; id <= static_cast<ElementId>(owner.elements.size()); ++id) {
      removeElement(owner, id);
    }
    before.restore();
    throw;
  }
  settleScrollAreas(owner, latest);
  settleScrolling(owner);
  presentWindows(world, owner, before.since());
  if (owner.focusedWindow == 0) before.restore();
  return before.since();
}

Added addForReaction(World& world, Pid pid, ElementId parent, const Reaction& reaction) {
  const auto index = findApplication(world, pid) - world.applications.data();
  Call call = reaction.addition->call;
  for (const auto& [place, value] : reaction.heldArguments) {
    call.arguments[place] = {Token::Kind::text, value};
  }
  const auto place = static_cast<std::size_t>(index);
  try {
    if (parent == 0) return {openDefined(world, place, call).size(), ""};
    return {addDefined(world, place, parent, call).size(), ""};
  } catch (const WorldError& error) {
    return {0, error.what()};
  }
}

void checkCall(const World& world, const Call& call, const Words& words) {
  checkCall(definitionsOf(world), call, words);
}

}  // namespace simulator
