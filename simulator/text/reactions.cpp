#include "simulator/text/reactions.h"

#include <algorithm>

#include "simulator/world/reactions.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace {

constexpr const char* aText = "a quoted text";
constexpr const char* aLabel = "the label of an element";

void readNothing(Words& /*words*/, const char* /*owner*/, Reaction& /*reaction*/) {}

void readText(Words& words, const char* owner, Reaction& reaction) {
  reaction.text = words.text(owner, aText);
}

void readTextAndTarget(Words& words, const char* owner, Reaction& reaction) {
  reaction.text = words.text(owner, aText);
  words.expect(owner, "to");
  reaction.target = words.name("to", aLabel);
}

void readTargetAndText(Words& words, const char* owner, Reaction& reaction) {
  reaction.target = words.name(owner, aLabel);
  reaction.text = words.text(owner, aText);
}

void readTarget(Words& words, const char* owner, Reaction& reaction) {
  reaction.target = words.name(owner, aLabel);
}

void readWindow(Words& words, const char* owner, Reaction& reaction) {
  reaction.window = words.text(owner, aText);
}

constexpr std::array knownReactions = {
    ReactionKind{"append", "\"text\" to Label",
                 "behind the `AXValue` of the element with this label; its caret follows",
                 readTextAndTarget, reactions::append},
    ReactionKind{"set", "Label \"text\"",
                 "the `AXValue` of the element with this label becomes the text", readTargetAndText,
                 reactions::set},
    ReactionKind{
        "toggle", "",
        "the element's own `AXValue` changes between 0 and 1, or false and true. A check box or "
        "switch without `press:` does so",
        readNothing, reactions::toggle},
    ReactionKind{
        "open sheet", "\"text\"",
        "a sheet opens on the window: a window of its own, untitled, with the text and a button OK "
        "that closes it. Until then the window takes no clicks",
        readText, reactions::openSheet},
    ReactionKind{"close window", "",
                 "the element's window closes, with its sheets; in a sheet the sheet alone",
                 readNothing, closeOwnWindow},
    ReactionKind{
        "show window", "\"Title\"",
        "this window of the application comes on screen, in front of the application's others, and "
        "has its focus",
        readWindow, reactions::showWindow},
    ReactionKind{"retitle", "\"Title\"", "the element's window gets another title", readText,
                 reactions::retitle},
    ReactionKind{"quit", "", "the application quits", readNothing, reactions::quit},
    ReactionKind{"hang", "", "the application stops answering and reacting", readNothing,
                 reactions::hang},
    ReactionKind{"remove", "Label", "the element with this label goes, with all that is in it",
                 readTarget, reactions::remove},
    ReactionKind{
        "choose", "",
        "the element's own `AXValue` becomes 1, that of its siblings of the same role 0. A radio "
        "button without `press:` does so",
        readNothing, reactions::choose},
    ReactionKind{"paste", "",
                 "what has the keyboard takes what is on the pasteboard when the application comes "
                 "to read it",
                 readNothing, reactions::paste},
};

constexpr bool isWholeReaction(const ReactionKind& kind) {
  return *kind.description != '\0' && kind.read != nullptr && kind.effect != nullptr;
}
static_assert(std::all_of(knownReactions.begin(), knownReactions.end(), isWholeReaction));

}  // namespace

std::span<const ReactionKind> reactionKinds() { return knownReactions; }

std::vector<Reaction> readReactions(Words& words, const char* owner) {
  const Phrases phrases = phrasesOf(knownReactions);
  std::vector<Reaction> reactions;
  do {
    if (words.atEnd()) words.failNeeding(owner, oneOf(phrases).c_str());
    const ReactionKind& kind = knownReactions[takePhrase(words, phrases)];
    Reaction& reaction = reactions.emplace_back();
    reaction.effect = kind.effect;
    kind.read(words, lastWord(kind.phrase), reaction);
  } while (words.takeSemicolon());
  const bool ends =
      words.atEnd() || words.nextIs("press:") || words.nextIs("right:") || words.nextIs("submit:");
  if (!ends) words.failUnknown(";, press:, right: or submit:");
  return reactions;
}

}  // namespace simulator
