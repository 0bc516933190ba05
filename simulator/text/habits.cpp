#include "simulator/text/habits.h"

#include <limits>
#include <utility>

#include "base/numbers.h"

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

constexpr std::array<Option<Transform>, 5> transforms = {{
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

}  // namespace

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

void readWhileHovered(Words& words, ElementDraft& draft) {
  words.expect("while", "hovered");
  draft.element.presence = Presence::whileHovered;
}

void readAlsoUnder(Words& words, ElementDraft& draft) {
  words.expect("also", "under");
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
  if (words.atEnd()) words.failNeeding("transform", ("one of " + wordsOf(transforms)).c_str());
  Transform& transform = habitsOf(draft).transforms.emplace_back();
  transforms[takeOption(words, transforms)].read(words, transform);
}

void readIgnoresWrites(Words& words, ElementDraft& draft) {
  words.expect("ignores", "writes");
  setWrites(words, draft, Habits::Writes::ignored);
}

void readHalfOfWrites(Words& words, ElementDraft& draft) {
  words.expect("half", "of");
  words.expect("of", "writes");
  setWrites(words, draft, Habits::Writes::halved);
}

void readLate(Words& words, ElementDraft& draft) { habitsOf(draft).delay = words.time("late"); }

void readShowsPlaceholder(Words& words, ElementDraft& draft) {
  words.expect("shows", "placeholder");
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

void readTakesFiles(Words& words, ElementDraft& draft) {
  words.expect("takes", "files");
  habitsOf(draft).takesFiles = true;
}

void readGrows(Words& words, ElementDraft& draft) {
  setChildren(words, draft,
              words.take("deeper") ? Habits::Children::growDeeper : Habits::Children::grow);
}

void readShrinks(Words& words, ElementDraft& draft) {
  setChildren(words, draft, Habits::Children::shrink);
}

}  // namespace simulator
