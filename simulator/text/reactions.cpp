#include "simulator/text/reactions.h"

#include <algorithm>

#include "simulator/text/error.h"
#include "simulator/text/expansion.h"
#include "simulator/text/naming.h"
#include "simulator/text/nearest.h"
#include "simulator/world/arranging.h"
#include "simulator/world/panels.h"
#include "simulator/world/reactions.h"
#include "simulator/world/roles.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace {

namespace behind = reaction_arguments;

constexpr bool isOwn = true;

/// The order is that of error messages and of pages.
constexpr std::array knownReactions = {
    ReactionKind{
        "append", behind::textAndTarget,
        "the text comes to the end of the `AXValue` of the element with this label; its caret "
        "follows",
        reactions::append},
    ReactionKind{"set", behind::targetAndText,
                 "the `AXValue` of the element with this label becomes the text", reactions::set},
    ReactionKind{
        "toggle", behind::ownOrTarget,
        "the element's own `AXValue`, or that of the one with this label, changes between 0 and 1, "
        "or false and true. A check box or switch without `press:` does so",
        reactions::toggle, isOwn},
    ReactionKind{
        "open sheet", behind::text,
        "a sheet opens on the window: a window of its own, untitled, with the text and a button OK "
        "that closes it. Until then the window takes no clicks",
        reactions::openSheet},
    ReactionKind{"close window", behind::ownOrWindow,
                 "the element's window, or the one with this title, closes, with its sheets; in a "
                 "sheet the sheet alone",
                 closeOwnWindow},
    ReactionKind{
        "show window", behind::window,
        "this window of the application comes on screen, in front of the application's others, and "
        "has its focus",
        reactions::showWindow},
    ReactionKind{"retitle", behind::text, "the element's window gets another title",
                 reactions::retitle},
    ReactionKind{"quit", behind::nothing, "the application quits", reactions::quit},
    ReactionKind{"hang", behind::nothing, "the application stops answering and reacting",
                 reactions::hang},
    ReactionKind{
        "remove", behind::targetOrHeld,
        "the element with this label, or with the label that another one has for its `AXValue`, "
        "goes, with all that is in it",
        reactions::remove},
    ReactionKind{
        "choose", behind::ownOrTarget,
        "the element's own `AXValue`, or that of the one with this label, becomes 1, that of its "
        "siblings of the same role 0. A radio button without `press:` does so",
        reactions::choose, isOwn},
    ReactionKind{
        "paste", behind::nothing,
        "the element with the keyboard takes the contents of the pasteboard, at the time when "
        "the application reads it",
        reactions::paste},
    ReactionKind{
        "move", behind::place,
        "the element with the first label goes above or below the other one, into the element "
        "around that; or it goes to another place in the element around itself",
        reactions::move},
    ReactionKind{
        "add", behind::addition,
        "the elements of a defined body of lines come into the element with this label, behind its "
        "others, or above or below it; an argument may be `value of Label`",
        reactions::add},
    ReactionKind{
        "open window", behind::call,
        "the windows that a body of lines describes come in front of the application's others, and "
        "the last has its focus; their numbers are best `new`, for each time another one",
        reactions::openWindow},
    ReactionKind{"enable", behind::target, "the element with this label can be used",
                 reactions::enable},
    ReactionKind{"disable", behind::target, "the element with this label cannot be used",
                 reactions::disable},
    ReactionKind{"relabel", behind::targetAndText,
                 "the element gets another label, by which it is named from then on",
                 reactions::relabel},
    ReactionKind{
        "count", behind::steps,
        "the number that the element has for its `AXValue`, or the first one in that text, "
        "goes up or down, by 1 without `by`; not below 0",
        reactions::count},
    ReactionKind{"open panel", behind::nothing,
                 "the system's panel for opening files comes up over the application's window; the "
                 "world has a line `panel` for it",
                 reactions::openPanel},
    ReactionKind{"save panel", behind::nothing, "the same with the panel for saving",
                 reactions::savePanel},
};

constexpr bool isWholeReaction(const ReactionKind& kind) {
  return *kind.description != '\0' && kind.effect != nullptr;
}
static_assert(std::all_of(knownReactions.begin(), knownReactions.end(), isWholeReaction));

const ReactionKind& kindOf(const Reaction& reaction) {
  return *std::find_if(knownReactions.begin(), knownReactions.end(),
                       [&](const ReactionKind& kind) { return kind.effect == reaction.effect; });
}

/// What a reaction may have before its phrase.
void readPrefixes(Words& words, Reaction& reaction) {
  if (words.take("after")) reaction.after = words.span("after");
  if (words.take("when")) {
    reaction.when = readCondition(words, "when");
    words.expect("when", "then");
  }
  if (words.take("in")) {
    reaction.elsewhere = words.name("in", "an application's name or pid:N");
    reaction.elsewherePid = pidWritten(*reaction.elsewhere).value_or(0);
  }
}

std::string prefixesText(const Reaction& reaction, const World* world) {
  std::string text;
  if (reaction.after) text += "after " + spanText(*reaction.after) + " ";
  if (const auto& when = reaction.when) {
    text += "when " + quotedWord(when->label) + (when->negated ? " is not " : " is ") +
            inQuotes(when->text) + " then ";
  }
  if (reaction.elsewherePid != 0) {
    text += "in " + writtenName(reaction.elsewherePid, world) + " ";
  } else if (reaction.elsewhere) {
    text += "in " + quotedWord(*reaction.elsewhere) + " ";
  }
  return text;
}

/// Finds what reactions name.
class Settler {
 public:
  Settler(const ReactionPlace& place, KnownLabels& labels)
      : place_(place), labels_(labels), world_(labels.world()) {}

  void settle(Reaction& reaction) const {
    Pid pid = place_.pid;
    if (reaction.elsewhere) {
      pid = reaction.elsewherePid = applicationNamed(place_.spot, world_, *reaction.elsewhere);
    }
    const Application& own = *findApplication(world_, place_.pid);
    const Application& meant = *findApplication(world_, pid);
    if (reaction.when) checkLabel(own, reaction.when->label);
    if (reaction.textOf) checkLabel(own, *reaction.textOf);
    if (reaction.target) checkLabel(meant, *reaction.target);
    if (reaction.other) checkLabel(meant, *reaction.other);
    if (reaction.window) checkTitle(meant, *reaction.window);
    for (const auto& [place, label] : reaction.argumentsOf) checkLabel(own, label);
    if (reaction.addition) checkAddition(reaction.addition->call);
    checkOwn(reaction);
    checkPanel(reaction, meant);
  }

 private:
  [[noreturn]] void fail(const std::string& cause) const { throw WorldError({place_.spot, cause}); }

  void checkLabel(const Application& application, const std::string& label) const {
    if (!labels_.has(application, label)) failUnlabelled(place_.spot, application, label);
  }

  void checkTitle(const Application& application, const std::string& title) const {
    const auto& windows = world_.windows;
    std::vector<std::string> titles;
    for (const Window& each : windows) {
      if (each.owner == application.pid && each.title) titles.push_back(*each.title);
    }
    const bool isThere = std::find(titles.begin(), titles.end(), title) != titles.end();
    if (isThere || labels_.isComingTitle(title)) return;
    throw WorldError({place_.spot,
                      "no window of " + nameOf(application) + " is titled \"" + title + '"',
                      nearest(title, titles),
                      {},
                      title});
  }

  void checkAddition(const Call& call) const {
    if (world_.definitions == nullptr) fail("'" + call.name + "' is defined nowhere");
    expandCall(*world_.definitions, call, [](const Line& /*line*/) {});
  }

  void checkOwn(const Reaction& reaction) const {
    const ReactionKind& kind = kindOf(reaction);
    const bool hasElement = place_.hasElement && !reaction.elsewhere;
    if (kind.isOwn && !reaction.target && !hasElement) {
      fail(std::string("'") + kind.phrase + "' needs the label of an element here");
    }
  }

  void checkPanel(const Reaction& reaction, const Application& application) const {
    const bool shows =
        reaction.effect == reactions::openPanel || reaction.effect == reactions::savePanel;
    if (shows && panelFor(world_, application.pid) == nullptr) {
      fail("no 'panel' stands over a window of " + nameOf(application));
    }
  }

  const ReactionPlace& place_;
  KnownLabels& labels_;
  const World& world_;
};

}  // namespace

std::span<const ReactionKind> reactionKinds() { return knownReactions; }

std::string formOf(const ReactionKind& kind) {
  const char* form = kind.arguments.form;
  return std::string(kind.phrase) + (*form == '\0' ? "" : " ") + form;
}

std::vector<Reaction> readReactions(Words& words, const char* owner) {
  const Phrases phrases = phrasesOf(knownReactions);
  std::vector<Reaction> reactions;
  do {
    Reaction& reaction = reactions.emplace_back();
    readPrefixes(words, reaction);
    if (words.atEnd()) words.failNeeding(owner, oneOf(phrases).c_str());
    const ReactionKind& kind = knownReactions[takePhrase(words, phrases)];
    reaction.effect = kind.effect;
    kind.arguments.read(words, lastWord(kind.phrase), reaction);
  } while (words.takeSemicolon());
  const bool ends = words.atEnd() || words.nextIs("press:") || words.nextIs("right:") ||
                    words.nextIs("double:") || words.nextIs("submit:");
  if (!ends) words.failUnknown(";, press:, right:, double: or submit:");
  return reactions;
}

std::string reactionText(const Reaction& reaction, const World* world) {
  const ReactionKind& kind = kindOf(reaction);
  const std::string arguments = kind.arguments.text(reaction);
  return prefixesText(reaction, world) + kind.phrase + (arguments.empty() ? "" : " ") + arguments;
}

std::string reactionsText(const std::vector<Reaction>& reactions, const World* world) {
  std::string text;
  for (const Reaction& each : reactions) {
    text += (text.empty() ? "" : "; ") + reactionText(each, world);
  }
  return text;
}

bool KnownLabels::has(const Application& application, const std::string& label) {
  if (coming_.contains(label)) return true;
  const auto [held, isNew] = held_.try_emplace(application.pid);
  if (isNew) {
    for (const Element& each : application.elements) {
      if (!each.removed && !isWindowRole(each.role)) held->second.insert(labelOf(each));
    }
  }
  return held->second.contains(label);
}

void settleReaction(const ReactionPlace& place, KnownLabels& labels, Reaction& reaction) {
  Settler(place, labels).settle(reaction);
}

void settleApplications(const Spot& spot, const World& world, std::vector<Reaction>& reactions) {
  for (Reaction& each : reactions) {
    const bool isOpen = each.elsewhere && each.elsewherePid == 0;
    if (isOpen) each.elsewherePid = applicationNamed(spot, world, *each.elsewhere);
  }
}

void settleReactions(const ReactionPlace& place, KnownLabels& labels,
                     std::vector<Reaction>& reactions) {
  for (Reaction& each : reactions) settleReaction(place, labels, each);
}

}  // namespace simulator
