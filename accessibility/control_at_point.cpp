#include <optional>

#include "accessibility/commands.h"
#include "accessibility/element.h"
#include "accessibility/info.h"
#include "accessibility/match.h"
#include "accessibility/messages.h"
#include "main/arguments.h"
#include "main/replies.h"

namespace driver {

void axAtCommand(const Arguments& arguments) {
  const Point point = pointIn(arguments, 3);
  std::optional<Snapshot> element = axActionable(point, axApp(arguments[2]));
  Reply reply = {{"ok", true}, {"element", Value()}};
  if (element) reply["element"] = axInfo(*element, Batch(structureAttributes));
  emit(reply);
}

void axPressCommand(const Arguments& arguments) {
  const Point point = pointIn(arguments, 3);
  const std::optional<Snapshot> found = axActionable(point, axApp(arguments[2]));
  if (!found) {
    emit(refusal("no element"));
    return;
  }
  Reply reply = actionReply(messages::perform(found->element(), "AXPress"));
  reply["element"] = axInfo(found->element());
  emit(reply);
}

void axMatchCommand(const Arguments& arguments) {
  const Point near = pointIn(arguments, 4);
  std::optional<Match> match = axMatch(axApp(arguments[2]), arguments[3], near);
  if (!match) {
    emit(refusal("no element"));
    return;
  }
  Reply reply = {{"ok", true}};
  if (arguments[1] == "ax-press-match") {
    reply = actionReply(messages::perform(match->element.element(), "AXPress"));
    reply["element"] = axInfo(match->element.element());
  } else {
    reply["element"] = axInfo(match->element, Batch(structureAttributes));
  }
  reply["matchedBy"] = wordOf(match->kind);
  emit(reply);
}

}  // namespace driver
