#include "simulator/text/builder.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "simulator/text/application.h"
#include "simulator/text/error.h"
#include "simulator/text/expansion.h"
#include "simulator/text/happenings.h"
#include "simulator/text/layout.h"
#include "simulator/text/menus.h"
#include "simulator/text/naming.h"
#include "simulator/text/nearest.h"
#include "simulator/text/now.h"
#include "simulator/text/reactions.h"
#include "simulator/text/settling.h"
#include "simulator/world/controls.h"
#include "simulator/world/elements.h"
#include "simulator/world/fields.h"
#include "simulator/world/panels.h"
#include "simulator/world/reactions.h"
#include "simulator/world/scrolling.h"

namespace simulator {

namespace {

/// The element that a line means by a label.
Element& labelled(const Spot& spot, Application& application, const std::string& label) {
  Element* found = findLabelled(application, label);
  if (found == nullptr) failUnlabelled(spot, application, label);
  return *found;
}

/// Complains of what the function throws, and goes on.
template <class Settle>
void attempt(const Complain& complain, Settle settle) {
  try {
    settle();
  } catch (const WorldError& error) {
    complain(error.complaint());
  }
}

std::array<std::vector<Reaction>*, 4> listsOf(Element& element) {
  return {&element.onClick, &element.onRightClick, &element.onDoubleClick, &element.onSubmit};
}

}  // namespace

void WorldBuilder::claimPid(const Words& words, Pid pid) const {
  const bool isProcess = world_.processes.count(pid) > 0;
  if (isProcess || findApplication(world_, pid) != nullptr) {
    words.fail("process id " + std::to_string(pid) + " is taken");
  }
}

void WorldBuilder::addToScript(Words& words) {
  Scripted scripted = readTimes(words, world_);
  scripted.place = script_.size();
  script_.push_back({std::move(scripted), words.rest()});
}

WorldBuilder::Place WorldBuilder::addApplication(Words& words) {
  ApplicationDraft draft = readApplicationLine(words);
  const Pid pid = draft.application.pid;
  claimPid(words, pid);
  if (draft.frontmost) {
    if (world_.frontmost != 0) words.fail("a second application is marked frontmost");
    world_.frontmost = pid;
  }
  if (!hasRunBefore(world_)) world_.files.insert(draft.files.begin(), draft.files.end());
  world_.applications.push_back(std::move(draft.application));
  withoutFocusedWindow_.push_back(draft.withoutFocusedWindow);
  const Place place{Place::Kind::application, "app", world_.applications.size() - 1, 0, 0};
  addLinks(words, place, std::move(draft.links));
  return place;
}

void WorldBuilder::addPanel(Words& words) {
  PanelDraft draft = readPanelLine(words, world_);
  const PanelService& service = draft.service;
  claimPid(words, service.pid);
  if (isTaken(service.number)) {
    words.fail("window number " + std::to_string(service.number) + " is taken");
  }
  world_.applications.push_back(std::move(draft.application));
  withoutFocusedWindow_.push_back(false);
  world_.lastWindow = std::max(world_.lastWindow, service.number);
  world_.panels.push_back(service);
  if (!draft.closed) showPanel(world_, service, PanelKind::save);
}

bool WorldBuilder::isTaken(WindowNumber number) const {
  return findWindow(world_, number) != nullptr ||
         std::any_of(world_.panels.begin(), world_.panels.end(),
                     [&](const PanelService& each) { return each.number == number; });
}

WindowNumber WorldBuilder::newNumber(const Words& words) const {
  if (world_.lastWindow == std::numeric_limits<WindowNumber>::max()) {
    words.fail("no window number is left");
  }
  return world_.lastWindow + 1;
}

void WorldBuilder::addLinks(const Words& words, const Place& place, std::vector<LinkDraft> links) {
  for (LinkDraft& link : links) {
    links_.push_back({words.spot(), place.application, place.element, std::move(link)});
  }
}

WorldBuilder::Place WorldBuilder::addWindow(Words& words, const Place& parent) {
  WindowDraft draft = readWindow(words);
  Window& window = draft.window;
  if (draft.isNew) window.number = newNumber(words);
  if (isTaken(window.number)) {
    words.fail("window number " + std::to_string(window.number) + " is taken");
  }
  Application& application = world_.applications[parent.application];
  window.owner = application.pid;
  Place place{Place::Kind::window, "window", parent.application, window.number, 0};
  if (draft.hasElement) {
    Element& element =
        putElement(words, world_, application, std::move(draft.body.element), draft.body.id);
    element.window = window.number;
    window.element = place.element = element.id;
    if (window.sheetOf != 0) {
      addToSheets(words, place, element, window, draft.closed);
    } else if (!draft.closed) {
      application.windows.push_back(element.id);
    }
    addLinks(words, place, std::move(draft.body.links));
  }
  if (draft.body.focused) {
    if (application.focusedWindow != 0) {
      words.fail("a second window of one application is focused");
    }
    application.focusedWindow = place.element;
  }
  world_.lastWindow = std::max(world_.lastWindow, window.number);
  const Window* below = findWindow(world_, window.sheetOf);
  const auto index = below == nullptr ? world_.windows.size()
                                      : static_cast<std::size_t>(below - world_.windows.data());
  world_.windows.insert(world_.windows.begin() + static_cast<std::ptrdiff_t>(index),
                        std::move(window));
  return place;
}

void WorldBuilder::addToSheets(const Words& words, const Place& place, Element& element,
                               const Window& window, bool closed) {
  const Window* below = findWindow(world_, window.sheetOf);
  if (below == nullptr || below->owner != window.owner || below->element == 0) {
    words.fail("no window " + std::to_string(window.sheetOf) +
               " with an element stands above in this application");
  }
  element.parent = below->element;
  if (closed) return;
  Application& application = world_.applications[place.application];
  findElement(application, below->element)->children.push_back(element.id);
}

WorldBuilder::Place WorldBuilder::addElement(Words& words, const Place& parent) {
  if (parent.kind == Place::Kind::window && parent.element == 0) {
    words.fail("nothing can be in a window without an element");
  }
  ElementDraft draft = readElement(words);
  Application& application = world_.applications[parent.application];
  Element& element = putElement(words, world_, application, std::move(draft.element), draft.id);
  const ElementId id = element.id;
  if (parent.element != 0) findElement(application, parent.element)->children.push_back(id);
  element.parent = parent.element;
  element.window = parent.window;
  if (draft.layout) element.frame = frameOf(words, application, element, *draft.layout);
  settlePresence(words, application, element, draft);
  placeMarkedText(words, application, element, draft);
  if (draft.focused) focus(words, application, element);
  noteReactions({words.spot(), parent.application, id});
  const Place place{Place::Kind::element, "element", parent.application, parent.window, id};
  addHabits(words, place, draft);
  addCopies(words, application, place, draft.count);
  addChoices(application, id, draft.choices);
  addLinks(words, place, std::move(draft.links));
  return place;
}

WorldBuilder::Place WorldBuilder::addMenuItem(Words& words, const Place& parent) {
  Application& application = world_.applications[parent.application];
  const ElementId id = simulator::addMenuItem(application, readMenuItem(words));
  noteReactions({words.spot(), parent.application, id});
  return {Place::Kind::element, "menu", parent.application, 0, id};
}

/// What they name may come later in the text.
void WorldBuilder::noteReactions(const PlacedElement& placed) {
  Application& application = world_.applications[placed.application];
  bool reacts = false;
  for (const std::vector<Reaction>* list : listsOf(*findElement(application, placed.element))) {
    reacts = reacts || !list->empty();
    noteLabels(*list);
  }
  if (reacts) reactions_.push_back(placed);
}

void WorldBuilder::noteLabels(const std::vector<Reaction>& list) {
  for (const Reaction& each : list) {
    if (each.effect == reactions::relabel) labels_.addComing(each.text);
    if (each.addition) noteAddedLabels(*each.addition);
  }
}

/// What is wrong with the call is told where it is settled.
void WorldBuilder::noteAddedLabels(const Addition& addition) {
  if (world_.definitions == nullptr) return;
  const auto note = [&](const Line& line) {
    const auto& tokens = line.tokens;
    const bool isWindow = !tokens.empty() && tokens[0].text == "window";
    const std::size_t place = isWindow ? 2 : 1;
    if (tokens.size() <= place || tokens[place].kind != Token::Kind::text) return;
    isWindow ? labels_.addComingTitle(tokens[place].text) : labels_.addComing(tokens[place].text);
  };
  try {
    expandCall(*world_.definitions, addition.call, note);
  } catch (const WorldError&) {
    return;
  }
}

void WorldBuilder::settlePresence(const Words& words, Application& application, Element& element,
                                  const ElementDraft& draft) {
  const Element* parent = findElement(application, element.parent);
  if (parent != nullptr) element.dependsOn = parent->dependsOn;
  if (element.presence == Presence::whileHovered && parent == nullptr) {
    words.fail("what is there 'while hovered' must be in an element");
  }
  const bool opens =
      parent != nullptr && (parent->role == "AXPopUpButton" || parent->role == "AXMenuButton");
  if (element.role == "AXMenu" && (opens || draft.open)) element.presence = Presence::whileOpen;
  if (draft.open.value_or(false)) {
    if (application.openMenu != 0) words.fail("a second menu of one application is open");
    application.openMenu = element.id;
  }
  if (element.presence != Presence::always) element.dependsOn = element.id;
}

void WorldBuilder::addHabits(const Words& words, const Place& place, const ElementDraft& draft) {
  const PlacedElement placed{words.spot(), place.application, place.element};
  for (const std::string& label : draft.alsoUnder) furtherParents_.push_back({placed, label});
  if (!draft.habits) return;
  world_.applications[place.application].habits.emplace(place.element, *draft.habits);
  if (draft.habits->isComposer) composers_.push_back(placed);
  if (draft.habits->onlyWhile) conditions_.push_back({placed, draft.habits->onlyWhile->label});
}

void WorldBuilder::addCopies(const Words& words, Application& application, const Place& place,
                             std::int64_t count) {
  if (count == 1) return;
  Element* parent = findElement(application, findElement(application, place.element)->parent);
  if (parent == nullptr) words.fail("what is repeated must be in an element");
  const Copies* last = application.copies.empty() ? nullptr : &application.copies.back();
  const ElementId first = last == nullptr ? firstCopy : last->first + last->count;
  application.copies.push_back({first, count - 1, place.element});
  for (std::int64_t i = 0; i < count - 1; ++i) parent->children.push_back(first + i);
}

void WorldBuilder::focus(const Words& words, Application& application, Element& element) {
  if (application.focusedElement != 0) {
    words.fail("a second element of one application is focused");
  }
  application.focusedElement = element.id;
  placeCaret(element);
}

void WorldBuilder::settleLink(const PlacedLink& placed) {
  Application& application = world_.applications[placed.application];
  std::vector<ElementId> ids;
  for (const std::string& label : placed.link.labels) {
    ids.push_back(labelled(placed.spot, application, label).id);
  }
  AttributeValue value =
      placed.link.list ? AttributeValue(std::move(ids)) : AttributeValue(ElementLink{ids.front()});
  auto& attributes = placed.element == 0 ? application.attributes
                                         : findElement(application, placed.element)->attributes;
  if (!attributes.emplace(placed.link.attribute, std::move(value)).second) {
    throw WorldError({placed.spot, placed.link.attribute + " is given twice"});
  }
}

void WorldBuilder::settleParent(const PlacedParent& placed) {
  Application& application = world_.applications[placed.child.application];
  labelled(placed.child.spot, application, placed.label).children.push_back(placed.child.element);
}

void WorldBuilder::settleReactions(const PlacedElement& placed) {
  Application& application = world_.applications[placed.application];
  const ReactionPlace place{placed.spot, application.pid};
  Element* const element = findElement(application, placed.element);
  if (element == nullptr) return;  // a static text of a composer, which has made its texts anew
  for (std::vector<Reaction>* list : listsOf(*element)) settleEach(place, *list);
}

void WorldBuilder::settleEach(const ReactionPlace& place, std::vector<Reaction>& reactions) {
  for (Reaction& each : reactions) {
    attempt(complain_, [&] { settleReaction(place, labels_, each); });
  }
}

void WorldBuilder::readScript() {
  for (PendingHappening& pending : script_) {
    attempt(complain_, [&] {
      Words words(pending.line);
      pending.scripted.happening = readHappening(words, world_);
      noteLabels(pending.scripted.happening.reactions);
    });
  }
}

void WorldBuilder::settleScript() {
  for (PendingHappening& pending : script_) {
    Happening& happening = pending.scripted.happening;
    settleEach({spotOf(pending.line), happening.pid, false}, happening.reactions);
    world_.script.push_back(std::move(pending.scripted));
  }
  sortScript(world_);
}

/// What a line names that may come later in the text, but for reactions.
void WorldBuilder::settleNames() {
  for (const PlacedLink& placed : links_) {
    attempt(complain_, [&] { settleLink(placed); });
  }
  for (const PlacedParent& placed : furtherParents_) {
    attempt(complain_, [&] { settleParent(placed); });
  }
  for (const PlacedElement& placed : composers_) {
    settleComposer(world_.applications[placed.application], placed.element);
  }
  for (const PlacedParent& placed : conditions_) {
    attempt(complain_, [&] {
      labelled(placed.child.spot, world_.applications[placed.child.application], placed.label);
    });
  }
}

void WorldBuilder::settleReactions() {
  for (const PlacedElement& placed : reactions_) settleReactions(placed);
}

void WorldBuilder::settleElements() {
  settleNames();
  settleReactions();
}

/// Nothing but what the lines say: it has come to be so while the Mac ran.
void WorldBuilder::finishLater() {
  for (const PlacedLink& placed : links_) {
    attempt(complain_, [&] { settleLink(placed); });
  }
  readScript();
  for (const PlacedElement& placed : reactions_) {
    Application& application = world_.applications[placed.application];
    for (auto* list : listsOf(*findElement(application, placed.element))) {
      attempt(complain_, [&] { settleApplications(placed.spot, world_, *list); });
    }
  }
  for (PendingHappening& pending : script_) {
    auto& reactions = pending.scripted.happening.reactions;
    attempt(complain_, [&] { settleApplications(spotOf(pending.line), world_, reactions); });
    world_.script.push_back(std::move(pending.scripted));
  }
  sortScript(world_);
  now_.read(complain_);
}

void WorldBuilder::finish() {
  if (hasRunBefore(world_)) {
    finishLater();
    return;
  }
  if (world_.displays.empty()) world_.displays.push_back({1, {0, 0, 1440, 900}, 2, true});
  settleNames();
  placeMenuBars(world_);
  for (Application& application : world_.applications) {
    settleScrollAreas(application);
    settleScrolling(application);
  }
  readScript();
  settleReactions();
  settleFocus(world_, withoutFocusedWindow_);
  settleWindows(world_);
  settleScript();
}

}  // namespace simulator
