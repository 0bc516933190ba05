
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "accessibility/commands.h"
#include "accessibility/element.h"
#include "accessibility/info.h"
#include "accessibility/match.h"
#include "accessibility/messages.h"
#include "accessibility/roles.h"
#include "accessibility/walk.h"
#include "main/replies.h"
#include "platform/text.h"

namespace driver {

namespace {

// Nobody has as many open. The rest of the tree is still searched for the buttons in these.
constexpr std::size_t modalsMax = 8;
// More than for a label: it is the whole of what the user is asked, and what is approved.
constexpr int textBudget = 80;  // elements
constexpr std::size_t textCharactersMax = 2000;

constexpr AttributeSet modalAttributes = infoAttributes | AttributeSet{Attribute::subrole};

/// A sheet, drawer or dialog.
struct Modal {
  Value::Object info;   // its description, without a value
  std::string subrole;  // empty when it has none
  std::string text;     // the static texts in it, cut
  std::vector<Button> buttons;
};

std::string subroleOf(Snapshot& element) {
  const std::string* subrole = element.text(Attribute::subrole);
  return subrole != nullptr ? *subrole : "";
}

bool isModal(Snapshot& element, bool isWindow) {
  const bool named =
      hasRole(modalRoles, element.role()) || hasRole(modalSubroles, subroleOf(element));
  // Ordinary windows of some applications call themselves dialogs, and block nothing.
  if (!named || (isWindow && !element.isTrue(Attribute::modal))) return false;
  return isLargeEnoughToSee(element);
}

std::string modalText(Snapshot& element, const Batch& each) {
  return axText(element, each, textBudget, textCharactersMax);
}

Modal modalIn(Snapshot& element, const Batch& each) {
  return {infoWithoutValue(element, each), subroleOf(element), modalText(element, each), {}};
}

Value descriptionOf(const Modal& modal) {
  Value::List buttons;
  for (const Button& button : modal.buttons) buttons.emplace_back(button.label);
  Value::Object description = modal.info;
  description["subrole"] = modal.subrole;
  description["text"] = modal.text;
  description["buttons"] = std::move(buttons);
  return description;
}

Reply pressIn(const Modal& modal, const std::string& label) {
  const Button* pressed = nullptr;
  std::size_t count = 0;
  for (const Button& button : modal.buttons) {
    if (!text::equal(button.label, label)) continue;
    pressed = &button;
    ++count;
  }
  if (count != 1) {
    return refusal(std::to_string(count) + " buttons labelled " + quoted(label) +
                   " in that dialog");
  }
  Reply reply = actionReply(messages::perform(pressed->element, "AXPress"));
  reply["pressed"] = label;
  return reply;
}

/// The sheets, drawers and dialogs in the window scope, eight of them at most.
std::vector<Modal> axModalElements(const ax::Element& application) {
  std::vector<Modal> modals;
  Walk walk(axWindows(application), modalAttributes, controlBounds);
  while (Snapshot* element = walk.next()) {
    if (walk.inTrunk() && isModal(*element, walk.depth() == 0)) {
      modals.push_back(modalIn(*element, walk.batch()));
      walk.beginBranch(buttonBounds);
      if (modals.size() == modalsMax) walk.endTrunk();
    }
    for (std::size_t i = 0; i < modals.size(); ++i) axButtons(walk, i, *element, modals[i].buttons);
  }
  return modals;
}

/// Their descriptions.
Value::List axModals(const ax::Element& application) {
  Value::List modals;
  for (const Modal& modal : axModalElements(application)) modals.push_back(descriptionOf(modal));
  return modals;
}

}  // namespace

void axModalCommand(const Arguments& arguments) {
  emit({{"ok", true}, {"modals", axModals(axApp(arguments[2]))}});
}

void axModalPressCommand(const Arguments& arguments) {
  std::vector<Modal> modals = axModalElements(axApp(arguments[2]));
  // A consent holds for what was read to the letter: nothing is folded, or picked out of several.
  std::erase_if(modals, [&](const Modal& m) { return !text::equal(m.text, arguments[3]); });
  if (modals.size() != 1) {
    emit(refusal(std::to_string(modals.size()) + " dialogs read exactly the approved text"));
    return;
  }
  emit(pressIn(modals.front(), arguments[4]));
}

}  // namespace driver
