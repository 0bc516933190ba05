#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "accessibility/commands.h"
#include "accessibility/element.h"
#include "accessibility/info.h"
#include "accessibility/labels.h"
#include "accessibility/match.h"
#include "accessibility/messages.h"
#include "accessibility/snapshot.h"
#include "input/pointer.h"
#include "input/post.h"
#include "input/target_window.h"
#include "main/globals.h"
#include "main/replies.h"
#include "main/state_queries.h"
#include "platform/loop.h"

namespace driver {

namespace {

// As long as a row takes to fade its controls in. Nothing tells when it has.
constexpr std::uint32_t hoverMicroseconds = 500'000;
constexpr std::size_t childrenMax = 20'000;  // that are asked what they offer, a message each

/// Lets the row show what it only shows under the pointer. Fails when no window lies there.
void hover(const std::string& reference, const Rect& row) {
  const Point centre = {row.x + row.width / 2, row.y + row.height / 2};
  const std::optional<workspace::Application> app = runningApp(reference);
  const std::optional<TargetWindow> window = app ? windowAt(app->pid, centre) : std::nullopt;
  if (!window) fail("no target window for row hover");
  // A move that could not be made shows in the controls that are missing then.
  backgroundMotion(*app, *window, centre, std::nullopt, std::nullopt);
  loop::sleepMicroseconds(hoverMicroseconds);
}

bool isControl(const ax::Element& element) {
  const std::vector<std::string> actions = axActions(element);
  return std::find(actions.begin(), actions.end(), "AXPress") != actions.end();
}

/// The control that was asked for, and the texts of those that were passed over.
struct Choice {
  std::optional<ax::Element> control;
  Value::List others;
};

Choice lastControl(const std::vector<Snapshot>& children) {
  // From the end: each child that is asked costs a message.
  std::size_t left = childrenMax;
  for (auto child = children.rbegin(); child != children.rend() && left > 0; ++child, --left) {
    if (isControl(child->element())) return {child->element(), {}};
  }
  return {};
}

Choice controlNamed(std::vector<Snapshot>& children, const std::string& name) {
  Choice choice;
  const std::string wanted = comparableLabel(name);
  const Batch each(structureAttributes);
  std::size_t left = childrenMax;
  for (Snapshot& child : children) {
    if (left-- == 0) break;
    if (!isControl(child.element())) continue;
    const std::string text = axText(child, each);
    if (comparableLabel(text) == wanted) {
      choice.control = child.element();
      break;
    }
    choice.others.emplace_back(text);
  }
  return choice;
}

Choice chooseControl(const ax::Element& row, const std::string& name) {
  // Read anew: the hover is there to change what the row has.
  Snapshot now(row);
  std::vector<Snapshot> children = now.takeChildren();
  return name == "last" ? lastControl(children) : controlNamed(children, name);
}

Reply pressReply(const ax::Element& row, const ax::Element& control) {
  Reply reply = actionReply(messages::perform(control, "AXPress"));
  reply["row"] = axInfo(row);
  reply["pressed"] = axText(control);
  return reply;
}

Reply pressChild(const ax::Element& row, const std::string& name) {
  Choice choice = chooseControl(row, name);
  if (!choice.control) {
    Reply reply = refusal("row has no control " + quoted(name));
    reply["controls"] = std::move(choice.others);
    return reply;
  }
  // The hover took its time. What was withheld from it is withheld from the press too.
  if (!mayActNow() || globals().droppedWhileLocked) failWithheld();
  return pressReply(row, *choice.control);
}

}  // namespace

void axPressChildCommand(const Arguments& arguments) {
  const std::string& label = arguments[3];
  std::optional<Match> match = axMatch(axApp(arguments[2]), label, noPoint);
  const std::optional<Rect> frame = match ? axFrame(match->element) : std::nullopt;
  if (!frame) {
    emit(refusal("no row matching " + quoted(label)));
    return;
  }
  Snapshot& row = match->element;
  if (arguments.size() > 5 && row.role() != arguments[5]) {
    Reply reply = refusal("row matching " + quoted(label) + " is not a " + arguments[5]);
    reply["row"] = axInfo(row, Batch(structureAttributes));
    emit(reply);
    return;
  }
  hover(arguments[2], *frame);
  emit(pressChild(row.element(), arguments[4]));
}

}  // namespace driver
