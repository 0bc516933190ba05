#include "simulator/text/addition.h"

#include "simulator/text/builder.h"
#include "simulator/text/expansion.h"
#include "simulator/text/line_reader.h"
#include "simulator/world/elements.h"

namespace simulator {

namespace {

const Definitions& definitionsOf(const World& world) {
  static const Definitions none;
  return world.definitions == nullptr ? none : *world.definitions;
}

}  // namespace

std::vector<ElementId> addDefined(World& world, std::size_t application, ElementId parent,
                                  const Call& call) {
  const Complain complain = [](const Complaint& complaint) { throw WorldError(complaint); };
  Application& owner = world.applications[application];
  const Element& around = *findElement(owner, parent);
  const std::size_t count = around.children.size();
  WorldBuilder builder(world, complain);
  LineReader reader(
      builder, complain,
      {WorldBuilder::Place::Kind::element, "element", application, around.window, parent});
  const auto added = [&]() -> std::vector<ElementId> {
    const auto& children = findElement(owner, parent)->children;
    return {children.begin() + static_cast<std::ptrdiff_t>(count), children.end()};
  };
  try {
    expandCall(definitionsOf(world), call, [&](const Line& line) { reader.read(line); });
    builder.settleElements();
  } catch (const WorldError&) {
    for (const ElementId id : added()) removeElement(owner, id);
    throw;
  }
  return added();
}

Added addForReaction(World& world, Pid pid, ElementId parent, const Reaction& reaction) {
  const auto index = findApplication(world, pid) - world.applications.data();
  Call call = reaction.addition->call;
  for (const auto& [place, value] : reaction.heldArguments) {
    call.arguments[place] = {Token::Kind::text, value};
  }
  try {
    return {addDefined(world, static_cast<std::size_t>(index), parent, call).size(), ""};
  } catch (const WorldError& error) {
    return {0, error.what()};
  }
}

void checkCall(const World& world, const Call& call, const Words& words) {
  checkCall(definitionsOf(world), call, words);
}

}  // namespace simulator
