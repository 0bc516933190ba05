#include "simulator/text/elements.h"

#include <limits>
#include <utility>

#include "simulator/text/attributes.h"
#include "simulator/text/habits.h"
#include "simulator/text/layout.h"
#include "simulator/text/now.h"
#include "simulator/world/element_text.h"
#include "simulator/world/elements.h"
#include "simulator/world/reactions.h"
#include "simulator/world/roles.h"

namespace simulator {

namespace {

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

constexpr std::array<Option<WindowDraft>, 17> windowOptions = {{
    {"id", [](Words& words, WindowDraft& draft) { draft.body.id = readElementId(words); }},
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
       putAttribute(words, draft.body.element.attributes, "AXMinimized", true);
       draft.window.onScreen = false;
     }},
    {"modal",
     [](Words& words, WindowDraft& draft) {
       putAttribute(words, draft.body.element.attributes, "AXModal", true);
     }},
    {"sheet",
     [](Words& words, WindowDraft& draft) {
       words.expect("sheet", "of");
       draft.window.sheetOf = static_cast<WindowNumber>(words.integer(
           "of", "the number of a window", 1, std::numeric_limits<WindowNumber>::max()));
     }},
    {"subrole",
     [](Words& words, WindowDraft& draft) {
       putAttribute(words, draft.body.element.attributes, "AXSubrole",
                    words.word("subrole", "a subrole"));
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
  if (element.role == "AXCheckBox" || element.role == "AXSwitch") {
    element.onClick = {{reactions::toggle}};
  }
  if (element.role == "AXRadioButton") element.onClick = {{reactions::choose}};
}

}  // namespace

ElementDraft readElement(Words& words) {
  ElementDraft draft;
  Element& element = draft.element;
  element.role = words.word("element", "a role");
  element.actions = defaultActions(element.role);
  if (words.nextIs(Token::Kind::text)) {
    putAttribute(words, element.attributes, labelAttribute(element.role),
                 words.text("element", ""));
  }
  readHabits(words, draft);
  completeLayout(words, draft);
  if (!draft.layout) element.frame = frameOf(words, draft);
  addDefaultValue(draft, element);
  addDefaultReaction(element);
  return draft;
}

WindowDraft readWindow(Words& words) {
  WindowDraft draft;
  draft.isNew = words.take("new");
  if (!draft.isNew) {
    draft.window.number = static_cast<WindowNumber>(
        words.integer("window", "a number from 1 on", 1, std::numeric_limits<WindowNumber>::max()));
  }
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

void placeMarkedText(const Words& words, Application& application, Element& element,
                     const ElementDraft& draft) {
  if (!draft.marked) return;
  if (!isTextInput(element)) words.fail("only a field has marked text");
  if (application.marked) words.fail("a second field of one application has marked text");
  const ax::Range& range = *draft.marked;
  if (range.location < 0 || range.length < 0) words.fail("'marked' needs numbers from 0");
  application.marked = Marked{element.id, range, false};
  element.attributes.emplace("AXSelectedTextRange", ax::Range{range.location + range.length, 0});
}

void placeCaret(Element& element) {
  if (!takesText(element.role) || element.attributes.count("AXSelectedTextRange") > 0) return;
  element.attributes.emplace("AXSelectedTextRange", ax::Range{utf16Length(textOf(element)), 0});
}

}  // namespace simulator
