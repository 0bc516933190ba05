#include <string>
#include <vector>

#include "accessibility/commands.h"
#include "accessibility/element.h"
#include "accessibility/info.h"
#include "accessibility/match.h"
#include "accessibility/messages.h"
#include "accessibility/walk.h"
#include "main/replies.h"
#include "platform/text.h"

namespace driver {

namespace {

constexpr AttributeSet documentAttributes = AttributeSet{Attribute::role} | labelAttributes;

/// What was found in the only document that is open.
struct Found {
  std::string document;         // its label
  std::vector<Button> buttons;  // those that were asked for
};

/// Looks for the one labelled document and its buttons of that label. Fails unless there is just
/// this document.
Found findIn(const ax::Element& application, const std::string& document,
             const std::string& button) {
  constexpr const char* notUnique = "the expected conversation document is not uniquely open";
  Found found;
  Walk walk(axWindows(application), documentAttributes, textBounds);
  while (Snapshot* element = walk.next()) {
    // Frames without a label belong to the page around them. A second labelled one is a second
    // conversation, in which the same button means another.
    if (walk.inTrunk() && element->role() == "AXWebArea") {
      const std::string label = axLabel(*element);
      if (!label.empty()) {
        if (!found.document.empty() || !text::equal(label, document)) fail(notUnique);
        found.document = label;
        walk.beginBranch(buttonBounds);
      }
    }
    if (!found.document.empty()) axButtons(walk, 0, *element, found.buttons);
  }
  if (found.document.empty()) fail(notUnique);
  std::erase_if(found.buttons,
                [&](const Button& each) { return !text::equal(each.label, button); });
  return found;
}

}  // namespace

void axPressInDocumentCommand(const Arguments& arguments) {
  const std::string& label = arguments[4];
  const Found found = findIn(axApp(arguments[2]), arguments[3], label);
  // The walk took its time, and a list of messages moves: the button may have become another.
  if (found.buttons.size() != 1 || !text::equal(axLabel(found.buttons.front().element), label)) {
    fail("the expected conversation has no unique button with that exact label");
  }
  const Button& button = found.buttons.front();
  Reply reply = actionReply(messages::perform(button.element, "AXPress"));
  reply["pressed"] = button.label;
  reply["document"] = found.document;
  emit(reply);
}

}  // namespace driver
