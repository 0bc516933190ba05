#include "simulator/text/elements.h"

#include <limits>
#include <utility>

#include "base/numbers.h"
#include "simulator/text/habits.h"
#include "simulator/text/reactions.h"
#include "simulator/world/element_text.h"
#include "simulator/world/roles.h"

namespace simulator {

namespace {

using Attributes = std::map<std::string, AttributeValue>;

constexpr const char* plainValue = "a text, a number, true or false";
constexpr const char* anyValue =
    "a text, a number, true, false, point, size, rect, range, opaque, element or elements";

void put(Words& words, Attributes& attributes, const std::string& name, AttributeValue value) {
  if (!attributes.emplace(name, std::move(value)).second) words.fail(name + " is given twice");
}

AttributeValue readPlainValue(Words& words, const char* owner, const char* what) {
  if (words.nextIs(Token::Kind::text)) return words.text(owner, what);
  if (words.take("true")) return true;
  if (words.take("false")) return false;
  if (words.nextIs(Token::Kind::word) && driver::parseInt64(words.peek()->text)) {
    return words.integer(owner, what, std::numeric_limits<std::int64_t>::min(),
                         std::numeric_limits<std::int64_t>::max());
  }
  return words.number(owner, what);
}

/// The value, or none when it is made of elements: that is then among the links.
std::optional<AttributeValue> readAnyValue(Words& words, const std::string& name,
                                           std::vector<LinkDraft>& links) {
  if (words.take("point")) return words.point("point");
  if (words.take("size")) return words.size("size");
  if (words.take("rect")) return words.rect("rect");
  if (words.take("range")) return words.range("range");
  if (words.take("opaque")) {
    return Opaque{static_cast<std::uint64_t>(words.integer(
        "opaque", "a hash of 0 or more", 0, std::numeric_limits<std::int64_t>::max()))};
  }
  if (words.take("element")) {
    links.push_back({name, {words.name("element", "the label of an element")}, false});
    return std::nullopt;
  }
  if (words.take("elements")) {
    LinkDraft link{name, {}, true};
    while (words.nextIs(Token::Kind::text)) link.labels.push_back(words.text("elements", ""));
    links.push_back(std::move(link));
    return std::nullopt;
  }
  return readPlainValue(words, "attribute", anyValue);
}

/// Reads a quoted text into an attribute.
void putText(Words& words, ElementDraft& draft, const char* owner, const char* attribute) {
  put(words, draft.element.attributes, attribute, words.text(owner, "a quoted text"));
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

std::vector<std::string> defaultActions(const std::string& role) {
  if (role == "AXPopUpButton" || role == "AXMenuButton") return {"AXPress", "AXShowMenu"};
  if (role == "AXMenu") return {"AXCancel"};
  if (isPressable(role)) return {"AXPress"};
  if (role == "AXSlider") return {"AXIncrement", "AXDecrement"};
  return {};
}

const char* labelAttribute(const std::string& role) {
  return role == "AXStaticText" || takesText(role) ? "AXDescription" : "AXTitle";
}

constexpr std::array<Option<ElementDraft>, 35> elementOptions = {{
    {"at", [](Words& words, ElementDraft& draft) { draft.position = words.point("at"); }},
    {"size", [](Words& words, ElementDraft& draft) { draft.size = words.size("size"); }},
    {"value",
     [](Words& words, ElementDraft& draft) {
       put(words, draft.element.attributes, "AXValue", readPlainValue(words, "value", plainValue));
     }},
    {"description",
     [](Words& words, ElementDraft& draft) {
       putText(words, draft, "description", "AXDescription");
     }},
    {"placeholder",
     [](Words& words, ElementDraft& draft) {
       putText(words, draft, "placeholder", "AXPlaceholderValue");
     }},
    {"help", [](Words& words, ElementDraft& draft) { putText(words, draft, "help", "AXHelp"); }},
    {"subrole",
     [](Words& words, ElementDraft& draft) {
       put(words, draft.element.attributes, "AXSubrole", words.word("subrole", "a subrole"));
     }},
    {"disabled",
     [](Words& words, ElementDraft& draft) {
       put(words, draft.element.attributes, "AXEnabled", false);
     }},
    {"modal", [](Words& words,
                 ElementDraft& draft) { put(words, draft.element.attributes, "AXModal", true); }},
    {"focused", [](Words&, ElementDraft& draft) { draft.focused = true; }},
    {"selection",
     [](Words& words, ElementDraft& draft) {
       put(words, draft.element.attributes, "AXSelectedTextRange", words.range("selection"));
     }},
    {"actions",
     [](Words& words, ElementDraft& draft) { draft.element.actions = readActions(words); }},
    {"attribute",
     [](Words& words, ElementDraft& draft) {
       readAttributeOption(words, draft.element.attributes, draft.links);
     },
     true},
    {"failing",
     [](Words& words, ElementDraft& draft) { readFailingOption(words, draft.element.failing); },
     true},
    {"range", readSliderRange},
    {"choices", readChoices},
    {"while", readWhileHovered},
    {"also", readAlsoUnder, true},
    {"repeat", readRepeat},
    {"open", [](Words& words, ElementDraft& draft) { readMenuState(words, draft, true); }},
    {"closed", [](Words& words, ElementDraft& draft) { readMenuState(words, draft, false); }},
    {"transform", readTransform, true},
    {"ignores", readIgnoresWrites},
    {"half", readHalfOfWrites},
    {"late", readLate},
    {"shows", readShowsPlaceholder},
    {"composer", readComposer},
    {"rejects", readRejects, true},
    {"replying", readReplying},
    {"grows", readGrows},
    {"shrinks", readShrinks},
    {"press:", [](Words& words,
                  ElementDraft& draft) { draft.element.onClick = readReactions(words, "press:"); }},
    {"right:",
     [](Words& words, ElementDraft& draft) {
       draft.element.onRightClick = readReactions(words, "right:");
     }},
    {"takes", readTakesFiles},
    {"submit:",
     [](Words& words, ElementDraft& draft) {
       draft.element.onSubmit = readReactions(words, "submit:");
     }},
}};

constexpr std::array<Option<WindowDraft>, 16> windowOptions = {{
    {"at", [](Words& words, WindowDraft& draft) { draft.body.position = words.point("at"); }},
    {"size", [](Words& words, WindowDraft& draft) { draft.body.size = words.size("size"); }},
    {"layer",
     [](Words& words, WindowDraft& draft) {
       draft.window.layer =
           words.integer("layer", "an integer", std::numeric_limits<std::int32_t>::min(),
                         std::numeric_limits<std::int32_t>::max());
     }},
    {"off-screen", [](Words&, WindowDraft& draft) { draft.window.onScreen = false; }},
    {"not-capturable", [](Words&, WindowDraft& draft) { draft.window.capturable = false; }},
    {"no-element", [](Words&, WindowDraft& draft) { draft.hasElement = false; }},
    {"focused", [](Words&, WindowDraft& draft) { draft.body.focused = true; }},
    {"closed", [](Words&, WindowDraft& draft) { draft.closed = true; }},
    {"minimized",
     [](Words& words, WindowDraft& draft) {
       put(words, draft.body.element.attributes, "AXMinimized", true);
       draft.window.onScreen = false;
     }},
    {"modal",
     [](Words& words, WindowDraft& draft) {
       put(words, draft.body.element.attributes, "AXModal", true);
     }},
    {"sheet",
     [](Words& words, WindowDraft& draft) {
       words.expect("sheet", "of");
       draft.window.sheetOf = static_cast<WindowNumber>(words.integer(
           "of", "the number of a window", 1, std::numeric_limits<WindowNumber>::max()));
     }},
    {"subrole",
     [](Words& words, WindowDraft& draft) {
       put(words, draft.body.element.attributes, "AXSubrole", words.word("subrole", "a subrole"));
     }},
    {"attribute",
     [](Words& words, WindowDraft& draft) {
       readAttributeOption(words, draft.body.element.attributes, draft.body.links);
     },
     true},
    {"failing",
     [](Words& words, WindowDraft& draft) { readFailingOption(words, draft.body.element.failing); },
     true},
    {"unnumbered", [](Words&, WindowDraft& draft) { draft.window.numberHidden = true; }},
    {"listed",
     [](Words& words, WindowDraft& draft) {
       words.expect("listed", "as");
       draft.window.listedNumber =
           words.integer("as", "a number", std::numeric_limits<std::int64_t>::min(),
                         std::numeric_limits<std::int64_t>::max());
     }},
}};

std::optional<Rect> frameOf(const Words& words, const ElementDraft& draft) {
  if (draft.position && !draft.size) words.fail("'at' needs 'size' beside it");
  if (draft.size && !draft.position) words.fail("'size' needs 'at' beside it");
  if (!draft.position) return std::nullopt;
  return Rect{draft.position->x, draft.position->y, draft.size->width, draft.size->height};
}

void addDefaultValue(const ElementDraft& draft, Element& element) {
  auto& attributes = element.attributes;
  const bool isComposer = draft.habits && draft.habits->isComposer;
  if (takesText(element.role) || isComposer) attributes.emplace("AXValue", std::string());
  if (!draft.choices.empty()) attributes.emplace("AXValue", draft.choices.front());
  const auto least = attributes.find("AXMinValue");
  if (element.role == "AXSlider" && least != attributes.end()) {
    attributes.emplace("AXValue", least->second);
  }
  if (isSwitchRole(element.role)) element.attributes.emplace("AXValue", std::int64_t{0});
}

void addDefaultReaction(Element& element) {
  if (!element.onClick.empty()) return;
  if (element.role == "AXCheckBox" || element.role == "AXSwitch") element.onClick.emplace_back();
  if (element.role == "AXRadioButton") {
    element.onClick.push_back({Reaction::Kind::choose, "", ""});
  }
}

}  // namespace

void readAttributeOption(Words& words, Attributes& attributes, std::vector<LinkDraft>& links) {
  const std::string name = words.word("attribute", "the name of an attribute");
  auto value = readAnyValue(words, name, links);
  if (value) put(words, attributes, name, std::move(*value));
}

void readFailingOption(Words& words, std::map<std::string, ax::Error>& failing) {
  const std::string name = words.word("failing", "the name of an attribute");
  const auto code = words.integer("failing", "an error code below 0",
                                  std::numeric_limits<std::int32_t>::min(), -1);
  if (!failing.emplace(name, static_cast<ax::Error>(code)).second) {
    words.fail("'failing " + name + "' is given twice");
  }
}

ElementDraft readElement(Words& words) {
  ElementDraft draft;
  Element& element = draft.element;
  element.role = words.word("element", "a role");
  element.actions = defaultActions(element.role);
  if (words.nextIs(Token::Kind::text)) {
    put(words, element.attributes, labelAttribute(element.role), words.text("element", ""));
  }
  readOptions(words, elementOptions, draft);
  element.frame = frameOf(words, draft);
  addDefaultValue(draft, element);
  addDefaultReaction(element);
  return draft;
}

WindowDraft readWindow(Words& words) {
  WindowDraft draft;
  draft.window.number = static_cast<WindowNumber>(
      words.integer("window", "a number from 1 on", 1, std::numeric_limits<WindowNumber>::max()));
  if (words.nextIs(Token::Kind::text)) draft.window.title = words.text("window", "");
  readOptions(words, windowOptions, draft);
  const auto frame = frameOf(words, draft.body);
  if (!frame) words.fail("a window needs 'at' and 'size'");
  if (!draft.hasElement && draft.body.focused) {
    words.fail("a window without an element cannot be focused");
  }
  draft.window.frame = *frame;
  if (draft.closed) draft.window.onScreen = false;
  Element& element = draft.body.element;
  element.frame = frame;
  if (draft.window.sheetOf != 0) {
    element.role = "AXSheet";
  } else {
    element.role = "AXWindow";
    element.actions = {"AXRaise"};
    element.attributes.emplace("AXSubrole", std::string("AXStandardWindow"));
  }
  if (draft.window.title) element.attributes.emplace("AXTitle", *draft.window.title);
  return draft;
}

void placeCaret(Element& element) {
  if (!takesText(element.role) || element.attributes.count("AXSelectedTextRange") > 0) return;
  element.attributes.emplace("AXSelectedTextRange", ax::Range{utf16Length(textOf(element)), 0});
}

}  // namespace simulator
