#include "simulator/world/reactions.h"

#include <algorithm>
#include <utility>

#include "base/numbers.h"
#include "simulator/world/element_text.h"
#include "simulator/world/fields.h"
#include "simulator/world/scrolling.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace reactions {

namespace {

/// What the reaction is about; null when it has gone.
Element* targetOf(const Reacting& with) {
  const auto& target = with.reaction.target;
  return target ? findLabelled(with.application, *target) : nullptr;
}

std::string noTarget(const Reacting& with) {
  return "finds nothing labelled \"" + with.reaction.target.value_or("") + "\"";
}

constexpr const char* noWindow = "finds no window";
constexpr const char* digits = "0123456789";
constexpr std::int64_t countMax = 1'000'000'000'000;

/// Its target, or the element whose reaction it is, also when another one of its reactions has
/// removed that. Null without either.
Element* targetOrSelf(const Reacting& with) {
  if (with.reaction.target) return targetOf(with);
  if (with.element == 0) return nullptr;
  return &with.application.elements[static_cast<std::size_t>(with.element) - 1];
}

/// The number that the text shows first goes up or down; one comes behind it where there is none.
std::string counted(const std::string& text, std::int64_t steps) {
  const std::size_t begin = std::min(text.find_first_of(digits), text.size());
  const std::size_t end = std::min(text.find_first_not_of(digits, begin), text.size());
  const auto number = driver::parseInt64(std::string_view(text).substr(begin, end - begin));
  const std::int64_t before = std::min(number.value_or(0), countMax);
  return text.substr(0, begin) + std::to_string(std::max(before + steps, std::int64_t{0})) +
         text.substr(end);
}

}  // namespace

std::string append(const Reacting& with) {
  const Element* target = targetOf(with);
  if (target == nullptr) return noTarget(with);
  addText(with.application, target->id, with.reaction.text);
  return "";
}

std::string set(const Reacting& with) {
  const Element* target = targetOf(with);
  if (target == nullptr) return noTarget(with);
  putText(with.application, target->id, with.reaction.text);
  return "";
}

std::string toggle(const Reacting& with) {
  Element* element = targetOrSelf(with);
  if (element == nullptr) return noTarget(with);
  AttributeValue& value = element->attributes["AXValue"];
  if (auto* flag = std::get_if<bool>(&value)) {
    *flag = !*flag;
    return "";
  }
  const auto* number = std::get_if<std::int64_t>(&value);
  value = std::int64_t{number != nullptr && *number == 1 ? 0 : 1};
  return "";
}

std::string choose(const Reacting& with) {
  Element* element = targetOrSelf(with);
  if (element == nullptr) return noTarget(with);
  if (const Element* parent = findElement(with.application, element->parent)) {
    for (const ElementId id : parent->children) {
      Element* sibling = findElement(with.application, id);
      if (sibling != nullptr && sibling->role == element->role) {
        sibling->attributes["AXValue"] = std::int64_t{0};
      }
    }
  }
  element->attributes["AXValue"] = std::int64_t{1};
  return "";
}

std::string openSheet(const Reacting& with) {
  const WindowNumber window = windowMeant(with.application, with.element);
  if (findWindow(with.world, window) == nullptr) return noWindow;
  simulator::openSheet(with.world, with.application, window, with.reaction.text);
  return "";
}

std::string showWindow(const Reacting& with) {
  const std::string title = with.reaction.window.value_or("");
  if (simulator::showWindow(with.world, with.application, title)) return "";
  return "finds no window titled \"" + title + "\"";
}

std::string retitle(const Reacting& with) {
  Window* window = findWindow(with.world, windowMeant(with.application, with.element));
  if (window == nullptr) return noWindow;
  window->title = with.reaction.text;
  if (Element* shown = findElement(with.application, window->element)) {
    shown->attributes["AXTitle"] = with.reaction.text;
  }
  return "";
}

std::string quit(const Reacting& with) {
  quitApplication(with.world, with.application.pid);
  return "";
}

std::string hang(const Reacting& with) {
  with.application.hangs = true;
  return "";
}

std::string paste(const Reacting& with) { return requestPaste(with.world, with.application); }

std::string enable(const Reacting& with) {
  Element* target = targetOf(with);
  if (target == nullptr) return noTarget(with);
  target->attributes["AXEnabled"] = true;
  return "";
}

std::string disable(const Reacting& with) {
  Element* target = targetOf(with);
  if (target == nullptr) return noTarget(with);
  target->attributes["AXEnabled"] = false;
  return "";
}

std::string relabel(const Reacting& with) {
  Element* target = targetOf(with);
  if (target == nullptr) return noTarget(with);
  target->attributes[labelAttributeOf(*target)] = with.reaction.text;
  return "";
}

std::string count(const Reacting& with) {
  Element* target = targetOf(with);
  if (target == nullptr) return noTarget(with);
  const std::int64_t steps = with.reaction.number;
  const auto held = target->attributes.find("AXValue");
  const auto* number =
      held == target->attributes.end() ? nullptr : std::get_if<std::int64_t>(&held->second);
  if (number != nullptr) {
    const std::int64_t before = std::clamp(*number, -countMax, countMax);
    held->second = std::max(before + steps, std::int64_t{0});
  } else {
    putText(with.application, target->id, counted(std::string(textOf(*target)), steps));
  }
  return "";
}

}  // namespace reactions

namespace {

std::string missing(const std::string& label) { return "finds nothing labelled \"" + label + "\""; }

std::string act(const Reacting& with) {
  std::string said = with.reaction.effect(with);
  settleScrolling(with.application);
  return said;
}

/// A reaction takes place. What it says of others is looked up in the application whose it is.
std::string takePlace(World& world, Application& application, ElementId id, Reaction reaction) {
  if (const auto& when = reaction.when) {
    if (findLabelled(application, when->label) == nullptr) return missing(when->label);
    if (!holds(application, *when)) return "";
  }
  if (reaction.textOf) {
    const Element* holder = findLabelled(application, *reaction.textOf);
    if (holder == nullptr) return missing(*reaction.textOf);
    reaction.text = valueText(*holder);
  }
  for (const auto& [place, label] : reaction.argumentsOf) {
    const Element* holder = findLabelled(application, label);
    if (holder == nullptr) return missing(label);
    reaction.heldArguments[place] = valueText(*holder);
  }
  if (!reaction.elsewhere) return act({world, application, id, reaction});
  Application* other = findApplication(world, reaction.elsewherePid);
  if (other == nullptr) return "finds no application " + *reaction.elsewhere;
  if (other->hangs) return "finds that " + *reaction.elsewhere + " hangs";
  return act({world, *other, 0, reaction});
}

void letFollow(World& world, const Application& application, ElementId id, Reaction reaction) {
  const Microseconds due = world.present + timeWithin(world.chance, *reaction.after);
  reaction.after.reset();
  // Behind those of the same time: they take place in the order of their causes.
  const auto place =
      std::upper_bound(world.due.begin(), world.due.end(), due,
                       [](Microseconds time, const DueReaction& each) { return time < each.due; });
  world.due.insert(place,
                   {due, application.pid, id, std::move(reaction), world.actor, world.recurring});
}

/// New elements move the others: nothing is held across a reaction.
std::vector<std::string> runAll(World& world, Application& application, ElementId id,
                                const std::vector<Reaction>& reactions) {
  std::vector<std::string> said;
  for (const Reaction& each : reactions) {
    if (!application.running) break;
    if (each.after) {
      letFollow(world, application, id, each);
      continue;
    }
    std::string sentence = takePlace(world, application, id, each);
    if (!sentence.empty()) said.push_back(std::move(sentence));
  }
  return said;
}

}  // namespace

std::string reactTo(World& world, Application& application, ElementId id,
                    std::vector<Reaction> Element::*reactions) {
  const std::vector<Reaction> all =
      application.elements[static_cast<std::size_t>(id) - 1].*reactions;
  std::string said;
  for (const std::string& each : runAll(world, application, id, all)) said += ", " + each;
  return said;
}

std::string react(World& world, Application& application, ElementId id, bool right) {
  return reactTo(world, application, id, right ? &Element::onRightClick : &Element::onClick);
}

std::vector<std::string> reactByItself(World& world, Pid pid,
                                       const std::vector<Reaction>& reactions) {
  Application* application = findApplication(world, pid);
  if (application == nullptr) return {"the application is gone"};
  if (application->hangs) return {"the application hangs"};
  return runAll(world, *application, 0, reactions);
}

SettledReaction settleReaction(World& world) {
  SettledReaction settled;
  settled.due = std::move(world.due.front());
  world.due.erase(world.due.begin());
  const DueReaction& due = settled.due;
  Application* application = findApplication(world, due.pid);
  if (application == nullptr || application->hangs) {
    settled.outcome = application == nullptr ? "the application is gone" : "the application hangs";
    return settled;
  }
  const Element* element = findElement(*application, due.element);
  if (element != nullptr) settled.element = elementName(*element);
  settled.landed = true;
  settled.outcome = takePlace(world, *application, due.element, due.reaction);
  return settled;
}

Microseconds timeWithin(std::optional<Random>& chance, const Span& span) {
  if (!chance) return span.least + (span.most - span.least) / 2;
  return chance->between(span.least, span.most);
}

}  // namespace simulator
