#include "simulator/input/key_presses.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "simulator/input/composing.h"
#include "simulator/input/key_window.h"
#include "simulator/input/typing.h"
#include "simulator/world/controls.h"
#include "simulator/world/elements.h"
#include "simulator/world/fields.h"
#include "simulator/world/keyboard_layouts.h"
#include "simulator/world/marking.h"
#include "simulator/world/pasteboard.h"
#include "simulator/world/presses.h"
#include "simulator/world/reactions.h"

namespace simulator {

namespace {

constexpr const char* noField = "nothing has the keyboard";

/// One key, the application it came to, and the field that has the keyboard there.
struct Taking {
  World& world;
  Application& application;
  const KeyPress& press;
  Element* field;  // may be null

  bool holds(std::uint64_t flag) const { return (press.flags & flag) != 0; }
  std::string_view character(bool shift) const {
    return characterOf(world.keyboard.layout, press.code, shift);
  }
};

std::string upper(std::string_view character) {
  std::string text(character);
  if (text.size() == 1 && text[0] >= 'a' && text[0] <= 'z') {
    text[0] = static_cast<char>(text[0] - 'a' + 'A');
  }
  return text;
}

/// What a key equivalent calls the key.
std::string equivalentOf(const Taking& taking, bool shift) {
  switch (taking.press.code) {
    case key_codes::returnKey:
    case key_codes::keypadEnter:
      return "\r";
    case key_codes::tab:
      return "\t";
    case key_codes::deleteKey:
      return "\b";
    case key_codes::escape:
      return "\x1b";
    default:
      return upper(taking.character(shift));
  }
}

/// The menu's item that has the shortcut. One for a character that needs shift may be written with
/// the plain character and shift, or with the shifted one.
ElementId itemFor(const Taking& taking) {
  // As AXMenuItemCmdModifiers has them: 8 says that the command key is not needed.
  std::int64_t modifiers = taking.holds(commandFlag) ? 0 : 8;
  if (taking.holds(controlFlag)) modifiers |= 4;
  if (taking.holds(optionFlag)) modifiers |= 2;
  const bool shift = taking.holds(shiftFlag);
  const std::string plain = equivalentOf(taking, false);
  if (plain.empty()) return 0;
  const ElementId item = itemWithShortcut(taking.application, plain, modifiers | (shift ? 1 : 0));
  if (item != 0 || !shift) return item;
  const std::string shifted = equivalentOf(taking, true);
  return shifted == plain ? 0 : itemWithShortcut(taking.application, shifted, modifiers);
}

/// The commands that fields know without a menu.
std::string fieldCommand(const Taking& taking) {
  const bool plain = taking.press.flags == commandFlag;
  const std::string_view key = taking.character(false);
  if (plain && key == "v") return requestPaste(taking.world, taking.application);
  if (!plain || taking.field == nullptr) return "no menu has the shortcut";
  Element& field = *taking.field;
  const std::string sentence = " in " + described(field);
  if (key == "a") {
    selectAll(field);
    return "selected all" + sentence;
  }
  if (key != "c" && key != "x") return "no menu has the shortcut";
  const std::string text = selectedText(field);
  if (text.empty()) return "nothing is selected" + sentence;
  copyText(taking.world.pasteboard, text);
  if (key == "x") deleteBackward(taking.application, field.id);
  return "copied" + sentence;
}

std::string takeShortcut(const Taking& taking) {
  const ElementId item = itemFor(taking);
  if (item != 0) return press(taking.world, taking.application, item);
  if (taking.holds(commandFlag)) return fieldCommand(taking);
  return "no menu has the shortcut";
}

bool isSingleLine(const Element& field) {
  return field.role == "AXTextField" || field.role == "AXSearchField" || field.role == "AXComboBox";
}

std::string type(const Taking& taking, const std::string& text, const std::string& sentence) {
  typeInto(taking.application, taking.field->id, selectionOf(*taking.field), text);
  return sentence;
}

std::string takeReturn(const Taking& taking) {
  const Element& field = *taking.field;
  const std::string name = described(field);
  const bool soft = taking.holds(shiftFlag) && !isSingleLine(field);
  if (!soft && (isSingleLine(field) || !field.onSubmit.empty())) {
    return "submitted " + name +
           reactTo(taking.world, taking.application, field.id, &Element::onSubmit);
  }
  return type(taking, "\n", (soft ? "broke the line softly in " : "broke the line in ") + name);
}

/// The keyboard goes to the next field of the window, or to the one before.
std::string takeTab(const Taking& taking) {
  const Element& field = *taking.field;
  const std::string name = described(field);
  if (!isSingleLine(field)) return type(taking, "\t", "typed a tab into " + name);
  std::vector<ElementId> fields;
  for (const Element& each : taking.application.elements) {
    const bool takes = !each.removed && each.window == field.window && isTextInput(each) &&
                       isEnabled(each) && isThere(taking.world, taking.application, each);
    if (takes) fields.push_back(each.id);
  }
  const auto here =
      static_cast<std::size_t>(std::find(fields.begin(), fields.end(), field.id) - fields.begin());
  // One back is all but one onwards: the last field is followed by the first.
  const std::size_t step = taking.holds(shiftFlag) ? fields.size() - 1 : 1;
  Element& next = *findElement(taking.application, fields[(here + step) % fields.size()]);
  focusField(taking.application, next);
  return "focused " + described(next);
}

std::optional<CaretMove> moveOf(std::int64_t code) {
  switch (code) {
    case key_codes::left:
      return CaretMove::left;
    case key_codes::right:
      return CaretMove::right;
    case key_codes::up:
      return CaretMove::up;
    case key_codes::down:
      return CaretMove::down;
    case key_codes::home:
    case key_codes::pageUp:
      return CaretMove::start;
    case key_codes::end:
    case key_codes::pageDown:
      return CaretMove::end;
    default:
      return std::nullopt;
  }
}

std::string takeInField(const Taking& taking) {
  Element& field = *taking.field;
  const std::string name = described(field);
  if (const auto move = moveOf(taking.press.code)) {
    moveCaret(field, *move);
    return "moved the caret in " + name;
  }
  switch (taking.press.code) {
    case key_codes::returnKey:
    case key_codes::keypadEnter:
      return takeReturn(taking);
    case key_codes::tab:
      return takeTab(taking);
    case key_codes::deleteKey:
      deleteBackward(taking.application, field.id);
      return "deleted in " + name;
    case key_codes::forwardDelete:
      deleteForward(taking.application, field.id);
      return "deleted in " + name;
    default:
      break;
  }
  // The characters that option gives are not modelled.
  const std::string text(taking.holds(optionFlag) ? "" : taking.character(taking.holds(shiftFlag)));
  if (text.empty()) return "typed nothing into " + name;
  return type(taking, text, "typed \"" + text + "\" into " + name);
}

/// The accent of a dead key comes before its letter, marked.
std::optional<std::string> takeDeadKey(const Taking& taking) {
  const Keyboard& keyboard = taking.world.keyboard;
  if (!keyboard.hasDeadKeys || taking.holds(optionFlag)) return std::nullopt;
  const std::string accent(deadKeyOf(keyboard.layout, taking.press.code, taking.holds(shiftFlag)));
  if (accent.empty()) return std::nullopt;
  const std::string name = described(*taking.field);
  addMarked(taking.application, taking.field->id, accent, true);
  return "marked \"" + accent + "\" in " + name;
}

/// The last character of marked text goes.
std::string shortenMarked(const Taking& taking, Marked marked) {
  Application& application = taking.application;
  const std::string name = described(*taking.field);
  const std::int64_t end = marked.range.location + marked.range.length;
  taking.field->attributes["AXSelectedTextRange"] = ax::Range{end, 0};
  deleteBackward(application, marked.element);
  const std::int64_t caret = selectionOf(*findElement(application, marked.element)).location;
  marked.range.length = caret - marked.range.location;
  if (marked.range.length > 0) application.marked = marked;
  return "deleted marked text in " + name;
}

/// What a key does first, or alone, while the field has marked text; nothing where it goes on as
/// ever, with that text committed.
std::optional<std::string> takeWhileMarked(const Taking& taking) {
  Application& application = taking.application;
  const auto range = markedIn(application, taking.field->id);
  if (!range) return std::nullopt;
  const Marked marked{taking.field->id, *range, application.marked->isDeadKey};
  const std::string name = described(*taking.field);
  const bool isReturn =
      taking.press.code == key_codes::returnKey || taking.press.code == key_codes::keypadEnter;
  if (taking.press.code == key_codes::escape ||
      (marked.isDeadKey && taking.press.code == key_codes::deleteKey)) {
    cancelMarked(application);
    return "took marked text back in " + name;
  }
  if (taking.press.code == key_codes::deleteKey) return shortenMarked(taking, marked);
  const std::string text(taking.holds(optionFlag) ? "" : taking.character(taking.holds(shiftFlag)));
  if (isReturn || text.empty() || taking.press.code == key_codes::tab) {
    commitMarked(application);
    if (!isReturn || marked.isDeadKey) return std::nullopt;
    return "committed marked text in " + name;
  }
  if (marked.isDeadKey) {
    typeBehindDeadKey(application, marked.element, text);
    return "typed \"" + text + "\" behind a dead key into " + name;
  }
  addMarked(application, marked.element, text, false);
  return "marked \"" + text + "\" in " + name;
}

}  // namespace

std::string takeKey(World& world, Application& application, const KeyPress& press) {
  if (const ModifierKey* modifier = modifierWithCode(press.code)) {
    return std::string(modifier->name);
  }
  if (application.hangs) return hangingSentence;
  const Taking taking{world, application, press, keyboardField(world, application)};
  if (taking.holds(commandFlag) || taking.holds(controlFlag)) {
    commitMarked(application);
    return takeShortcut(taking);
  }
  if (taking.field == nullptr) return noField;
  if (press.text.empty()) {
    if (auto said = takeWhileMarked(taking)) return *said;
    if (auto said = takeDeadKey(taking)) return *said;
    return takeInField(taking);
  }
  makeWayForText(application, *taking.field);
  return type(taking, press.text, "typed \"" + press.text + "\" into " + described(*taking.field));
}

}  // namespace simulator
