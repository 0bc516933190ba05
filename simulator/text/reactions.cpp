#include "simulator/text/reactions.h"

namespace simulator {

namespace {

constexpr const char* aText = "a quoted text";
constexpr const char* aLabel = "the label of an element";

using Kind = Reaction::Kind;

constexpr std::array<Option<Reaction>, 12> kinds = {{
    {"append",
     [](Words& words, Reaction& reaction) {
       reaction.kind = Kind::append;
       reaction.text = words.text("append", aText);
       words.expect("append", "to");
       reaction.target = words.name("to", aLabel);
     }},
    {"set",
     [](Words& words, Reaction& reaction) {
       reaction.kind = Kind::set;
       reaction.target = words.name("set", aLabel);
       reaction.text = words.text("set", aText);
     }},
    {"toggle", [](Words&, Reaction& reaction) { reaction.kind = Kind::toggle; }},
    {"open",
     [](Words& words, Reaction& reaction) {
       reaction.kind = Kind::openSheet;
       words.expect("open", "sheet");
       reaction.text = words.text("sheet", aText);
     }},
    {"close",
     [](Words& words, Reaction& reaction) {
       reaction.kind = Kind::closeWindow;
       words.expect("close", "window");
     }},
    {"show",
     [](Words& words, Reaction& reaction) {
       reaction.kind = Kind::showWindow;
       words.expect("show", "window");
       reaction.text = words.text("window", aText);
     }},
    {"retitle",
     [](Words& words, Reaction& reaction) {
       reaction.kind = Kind::retitle;
       reaction.text = words.text("retitle", aText);
     }},
    {"quit", [](Words&, Reaction& reaction) { reaction.kind = Kind::quit; }},
    {"hang", [](Words&, Reaction& reaction) { reaction.kind = Kind::hang; }},
    {"remove",
     [](Words& words, Reaction& reaction) {
       reaction.kind = Kind::remove;
       reaction.target = words.name("remove", aLabel);
     }},
    {"choose", [](Words&, Reaction& reaction) { reaction.kind = Kind::choose; }},
    {"paste", [](Words&, Reaction& reaction) { reaction.kind = Kind::paste; }},
}};

}  // namespace

std::vector<Reaction> readReactions(Words& words, const char* owner) {
  std::vector<Reaction> reactions;
  do {
    if (words.atEnd()) words.failNeeding(owner, ("one of " + wordsOf(kinds)).c_str());
    kinds[takeOption(words, kinds)].read(words, reactions.emplace_back());
  } while (words.takeSemicolon());
  const bool ends =
      words.atEnd() || words.nextIs("press:") || words.nextIs("right:") || words.nextIs("submit:");
  if (!ends) words.failUnknown(";, press:, right: or submit:");
  return reactions;
}

}  // namespace simulator
