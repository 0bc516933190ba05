#include "simulator/text/habits.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "base/numbers.h"
#include "simulator/text/attributes.h"
#include "simulator/text/layout.h"
#include "simulator/text/now.h"
#include "simulator/text/reactions.h"

namespace simulator {

namespace {

constexpr std::int64_t copiesMax = 1'000'000;
constexpr std::int64_t charactersMax = 1'000'000;
constexpr const char* anErrorCode = "an error code below 0";

Habits& habitsOf(ElementDraft& draft) {
  if (!draft.habits) draft.habits.emplace();
  return *draft.habits;
}

std::optional<AttributeValue> limitOf(std::string_view text) {
  if (const auto integer = driver::parseInt64(text)) return *integer;
  if (const auto number = driver::parseDouble(text)) return *number;
  return std::nullopt;
}

void setWrites(Words& words, ElementDraft& draft, Habits::Writes writes) {
  Habits& habits = habitsOf(draft);
  if (habits.writes != Habits::Writes::taken) words.fail("writes are described twice");
  habits.writes = writes;
}

void setChildren(Words& words, ElementDraft& draft, Habits::Children children) {
  Habits& habits = habitsOf(draft);
  if (habits.children != Habits::Children::steady) words.fail("children are described twice");
  habits.children = children;
}

ax::Error readError(Words& words, const char* owner) {
  return static_cast<ax::Error>(
      words.integer(owner, anErrorCode, std::numeric_limits<std::int32_t>::min(), -1));
}

constexpr std::array<Option<Transform>, 5> knownTransforms = {{
    {"upper", [](Words&, Transform& transform) { transform.kind = Transform::Kind::upper; }},
    {"lower", [](Words&, Transform& transform) { transform.kind = Transform::Kind::lower; }},
    {"trim", [](Words&, Transform& transform) { transform.kind = Transform::Kind::trim; }},
    {"one-line", [](Words&, Transform& transform) { transform.kind = Transform::Kind::oneLine; }},
    {"first",
     [](Words& words, Transform& transform) {
       transform.kind = Transform::Kind::first;
       transform.characters = static_cast<std::size_t>(
           words.integer("first", "a number of characters", 0, charactersMax));
       words.take("characters");
     }},
}};

void readSliderRange(Words& words, ElementDraft& draft) {
  constexpr const char* what = "LEAST..MOST";
  const std::string range = words.word("range", what);
  const std::size_t dots = range.find("..");
  const auto least = limitOf(std::string_view(range).substr(0, dots));
  const auto most =
      dots == range.npos ? std::nullopt : limitOf(std::string_view(range).substr(dots + 2));
  if (!least || !most) words.fail("'range' needs LEAST..MOST, not '" + range + "'");
  auto& attributes = draft.element.attributes;
  if (!attributes.emplace("AXMinValue", *least).second) words.fail("AXMinValue is given twice");
  if (!attributes.emplace("AXMaxValue", *most).second) words.fail("AXMaxValue is given twice");
  if (words.take("step")) habitsOf(draft).step = words.number("step", "a number");
}

void readChoices(Words& words, ElementDraft& draft) {
  do {
    draft.choices.push_back(words.text("choices", "quoted texts"));
  } while (words.nextIs(Token::Kind::text));
}

void refuseSecondPresence(const Words& words, const ElementDraft& draft) {
  if (draft.element.presence == Presence::always) return;
  words.fail("an element is either there 'while hovered' or 'only while'");
}

void readWhileHovered(Words& words, ElementDraft& draft) {
  refuseSecondPresence(words, draft);
  draft.element.presence = Presence::whileHovered;
}

void readOnlyWhile(Words& words, ElementDraft& draft) {
  refuseSecondPresence(words, draft);
  draft.element.presence = Presence::whileHeld;
  habitsOf(draft).onlyWhile = readCondition(words, "while");
}

void readAlsoUnder(Words& words, ElementDraft& draft) {
  draft.alsoUnder.push_back(words.name("under", "the label of an element"));
}

void readRepeat(Words& words, ElementDraft& draft) {
  draft.count = words.integer("repeat", "a number from 1 to 1000000", 1, copiesMax);
}

void readMenuState(Words& words, ElementDraft& draft, bool open) {
  if (draft.element.role != "AXMenu") words.fail("only an AXMenu is 'open' or 'closed'");
  if (draft.open) words.fail("a menu is either 'open' or 'closed'");
  draft.open = open;
}

void readTransform(Words& words, ElementDraft& draft) {
  if (words.atEnd()) words.failNeeding("transform", oneOf(phrasesOf(knownTransforms)).c_str());
  Transform& transform = habitsOf(draft).transforms.emplace_back();
  knownTransforms[takePhrase(words, phrasesOf(knownTransforms))].read(words, transform);
}

void readIgnoresWrites(Words& words, ElementDraft& draft) {
  setWrites(words, draft, Habits::Writes::ignored);
}

void readHalfOfWrites(Words& words, ElementDraft& draft) {
  setWrites(words, draft, Habits::Writes::halved);
}

void readLate(Words& words, ElementDraft& draft) { habitsOf(draft).delay = words.time("late"); }

void readShowsPlaceholder(Words& /*words*/, ElementDraft& draft) {
  habitsOf(draft).showsPlaceholder = true;
}

void readComposer(Words& words, ElementDraft& draft) {
  Habits& habits = habitsOf(draft);
  habits.isComposer = true;
  if (!words.take("without")) return;
  words.expect("without", "value");
  habits.hidesValue = true;
}

void readRejects(Words& words, ElementDraft& draft) {
  const std::string name = words.word("rejects", "the name of an attribute");
  ax::Error error = ax::Error::attributeUnsupported;
  const Token* next = words.peek();
  if (next != nullptr && next->kind == Token::Kind::word && driver::parseInt64(next->text)) {
    error = readError(words, "rejects");
  }
  if (!habitsOf(draft).rejecting.emplace(name, error).second) {
    words.fail("'rejects " + name + "' is given twice");
  }
}

void readReplying(Words& words, ElementDraft& draft) {
  habitsOf(draft).actionError = readError(words, "replying");
}

void readTakesFiles(Words& /*words*/, ElementDraft& draft) { habitsOf(draft).takesFiles = true; }

void readScrolls(Words& words, ElementDraft& draft) {
  habitsOf(draft).scrolling =
      words.take("lazily") ? Habits::Scrolling::lazy : Habits::Scrolling::whole;
}

void readStacks(Words& /*words*/, ElementDraft& draft) { habitsOf(draft).stacks = true; }

void readGrows(Words& words, ElementDraft& draft) {
  setChildren(words, draft,
              words.take("deeper") ? Habits::Children::growDeeper : Habits::Children::grow);
}

void readShrinks(Words& words, ElementDraft& draft) {
  setChildren(words, draft, Habits::Children::shrink);
}

void readTextInto(Words& words, ElementDraft& draft, const char* owner, const char* attribute) {
  putAttribute(words, draft.element.attributes, attribute, words.text(owner, "a quoted text"));
}

std::vector<std::string> readActions(Words& words) {
  const std::string list = words.word("actions", "names such as AXPress,AXShowMenu, or none");
  std::vector<std::string> names;
  if (list == "none") return names;
  for (std::size_t start = 0; start <= list.size();) {
    const std::size_t comma = std::min(list.find(',', start), list.size());
    names.push_back(list.substr(start, comma - start));
    if (names.back().empty()) words.fail("'actions' has an empty name in '" + list + "'");
    start = comma + 1;
  }
  return names;
}

constexpr bool once = false;
constexpr bool severalTimes = true;

/// The order is that of error messages and of pages.
constexpr std::array knownHabits = {
    Habit{"id", "N", "its number in its application; only in snapshots",
          [](Words& words, ElementDraft& draft) { draft.id = readElementId(words); }, once},
    Habit{"at", "X,Y", "where it is; with `size`",
          [](Words& words, ElementDraft& draft) { draft.position = words.point("at"); }, once},
    Habit{"size", "WIDTHxHEIGHT", "how large it is; with `at`",
          [](Words& words, ElementDraft& draft) { draft.size = words.size("size"); }, once},
    Habit{"below", "previous|Label [gap N]",
          "under the element before it, or under the one with this label, in the same element; as "
          "large as that one, unless its line has a size. The first one is at the top left",
          readBelow, once},
    Habit{"right of", "previous|Label [gap N]", "the same to the right", readRightOf, once},
    Habit{"inside", "N",
          "so far inside the edges of the element around it, which it fills unless its line has a "
          "size",
          readInside, once},
    Habit{"fill", "[width|height]", "up to the edges of the element around it, less `inside`",
          readFill, once},
    Habit{"width", "N", "how wide it is", readWidth, once},
    Habit{"height", "N", "how high it is", readHeight, once},
    Habit{"value", "VALUE",
          "`AXValue`: a text, a number, true or false. Texts have \"\" and check boxes, radio "
          "buttons and switches 0 without it",
          [](Words& words, ElementDraft& draft) {
            putAttribute(words, draft.element.attributes, "AXValue",
                         readPlainValue(words, "value"));
          },
          once},
    Habit{"description", "\"text\"", "`AXDescription`",
          [](Words& words, ElementDraft& draft) {
            readTextInto(words, draft, "description", "AXDescription");
          },
          once},
    Habit{"placeholder", "\"text\"", "`AXPlaceholderValue`",
          [](Words& words, ElementDraft& draft) {
            readTextInto(words, draft, "placeholder", "AXPlaceholderValue");
          },
          once},
    Habit{"help", "\"text\"", "`AXHelp`",
          [](Words& words, ElementDraft& draft) { readTextInto(words, draft, "help", "AXHelp"); },
          once},
    Habit{"subrole", "AXSearchField", "`AXSubrole`",
          [](Words& words, ElementDraft& draft) {
            putAttribute(words, draft.element.attributes, "AXSubrole",
                         words.word("subrole", "a subrole"));
          },
          once},
    Habit{"disabled", "",
          "`AXEnabled` is false: clicks do nothing, and actions and writes of its value, text or "
          "focus are errors",
          [](Words& words, ElementDraft& draft) {
            putAttribute(words, draft.element.attributes, "AXEnabled", false);
          },
          once},
    Habit{"modal", "", "`AXModal` is true",
          [](Words& words, ElementDraft& draft) {
            putAttribute(words, draft.element.attributes, "AXModal", true);
          },
          once},
    Habit{"focused", "",
          "it has its application's keyboard focus, its caret behind the last character",
          [](Words&, ElementDraft& draft) { draft.focused = true; }, once},
    Habit{"selection", "START+LENGTH",
          "`AXSelectedTextRange`: where, and how much, in UTF-16 units",
          [](Words& words, ElementDraft& draft) {
            putAttribute(words, draft.element.attributes, "AXSelectedTextRange",
                         words.range("selection"));
          },
          once},
    Habit{"marked", "START+LENGTH [lost]",
          "of a field: this part of its value is marked text, which an input method has not "
          "committed. Keys go on composing it, return commits it, escape takes it back; another "
          "text commits it or, `lost`, takes its place",
          [](Words& words, ElementDraft& draft) {
            draft.marked = words.range("marked");
            if (words.take("lost")) habitsOf(draft).losesMarked = true;
          },
          once},
    Habit{
        "actions", "AXPress,AXShowMenu|none",
        "its actions. Without it `AXPress` for elements that can be pressed (and `AXShowMenu` for "
        "pop-up and menu buttons), `AXIncrement` and `AXDecrement` for sliders, `AXCancel` for "
        "menus, none for others",
        [](Words& words, ElementDraft& draft) {
          draft.element.actions = readActions(words);
          habitsOf(draft).givesActions = true;
        },
        once},
    Habit{"attribute", "AXFoo VALUE", "any attribute",
          [](Words& words, ElementDraft& draft) {
            readAttributeOption(words, draft.element.attributes, draft.links);
          },
          severalTimes},
    Habit{
        "failing", "AXTitle CODE", "reading the attribute fails with this code, below 0",
        [](Words& words, ElementDraft& draft) { readFailingOption(words, draft.element.failing); },
        severalTimes},
    Habit{"range", "LEAST..MOST [step N]",
          "a slider's `AXMinValue` and `AXMaxValue`, and how far a step goes (a tenth of the way "
          "without it). Its value is the least without `value`",
          readSliderRange, once},
    Habit{"choices", "\"text\"...",
          "a closed menu with these items. The first is the value without `value`. A combo box has "
          "none at first, and a button that opens a list of them",
          readChoices, once},
    Habit{"while hovered", "", "it is there only while the pointer is over the element around it",
          readWhileHovered, once},
    Habit{
        "only while", "Label is [not] VALUE",
        "it is there only while the element with this label has this `AXValue`, or has not, as the "
        "contents of a tab or of an open row are",
        readOnlyWhile, once},
    Habit{"also under", "Label", "it is also a child of the element with this label", readAlsoUnder,
          severalTimes},
    Habit{
        "repeat", "N",
        "so many of the element, 1,000,000 at most. They share everything but their identity; one "
        "is drawn",
        readRepeat, once},
    Habit{"open", "", "for an `AXMenu`: it is open at the start",
          [](Words& words, ElementDraft& draft) { readMenuState(words, draft, true); }, once},
    Habit{"closed", "", "for an `AXMenu`: it is there only while it is open",
          [](Words& words, ElementDraft& draft) { readMenuState(words, draft, false); }, once},
    Habit{"transform", "upper|lower|trim|one-line|first N characters",
          "it changes the whole text so after a write, a key or a paste (letters and blanks of "
          "ASCII; line breaks become spaces); several go in order",
          readTransform, severalTimes},
    Habit{"ignores writes", "", "it accepts a text that is written, and does not change",
          readIgnoresWrites, once},
    Habit{"half of writes", "", "only the first half of its characters arrives", readHalfOfWrites,
          once},
    Habit{"late", "TIME", "a text that is written lands that much later", readLate, once},
    Habit{"shows placeholder", "", "while it is empty the placeholder reads as its value",
          readShowsPlaceholder, once},
    Habit{"composer", "[without value]",
          "its text shows as `AXStaticText`s in it, one for each line that is not empty; `without "
          "value`: its `AXValue` reads as none. The text at the start is the value, or that of the "
          "static texts below it",
          readComposer, once},
    Habit{"rejects", "AXValue [CODE]",
          "writes of the attribute give an error, -25205 without a code. For any element",
          readRejects, severalTimes},
    Habit{"replying", "CODE", "its actions run, and answer with this code, below 0", readReplying,
          once},
    Habit{"grows", "[deeper]",
          "after each read of its `AXChildren` it has one more, or one more that does the same",
          readGrows, once},
    Habit{"shrinks", "", "after each read of its `AXChildren` it has one less", readShrinks, once},
    Habit{"press:", "REACTION; ...", "the effect of a click",
          [](Words& words, ElementDraft& draft) {
            draft.element.onClick = readReactions(words, "press:");
          },
          once},
    Habit{"right:", "REACTION; ...", "the effect of a right click",
          [](Words& words, ElementDraft& draft) {
            draft.element.onRightClick = readReactions(words, "right:");
          },
          once},
    Habit{"double:", "REACTION; ...",
          "the effect of the second of two clicks, in place of that of a click",
          [](Words& words, ElementDraft& draft) {
            draft.element.onDoubleClick = readReactions(words, "double:");
          },
          once},
    Habit{"stacks", "",
          "its children lie one below the other: when one goes or moves away, those below it close "
          "up, and when one comes they make room",
          readStacks, once},
    Habit{"scrolls", "[lazily]",
          "its contents are cut at its edges and scroll; `lazily`: the tree has only the visible "
          "ones. It needs a frame; an `AXScrollArea` gets its `AXScrollBar`s",
          readScrolls, once},
    Habit{"takes files", "",
          "files that are pasted become `AXImage`s in it, titled with their names; other things "
          "are pasted if it takes text",
          readTakesFiles, once},
    Habit{"submit:", "REACTION; ...", "the effect of the return key, in place of a line break",
          [](Words& words, ElementDraft& draft) {
            draft.element.onSubmit = readReactions(words, "submit:");
          },
          once},
};

constexpr bool isWholeHabit(const Habit& habit) {
  return *habit.description != '\0' && habit.read != nullptr;
}
static_assert(std::all_of(knownHabits.begin(), knownHabits.end(), isWholeHabit));

}  // namespace

std::span<const Habit> habits() { return knownHabits; }

void readHabits(Words& words, ElementDraft& draft) { readOptions(words, knownHabits, draft); }

}  // namespace simulator
