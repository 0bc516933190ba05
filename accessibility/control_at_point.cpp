#include <optional>

#include "accessibility/commands.h"
#include "accessibility/element.h"
#include "accessibility/info.h"
#include "accessibility/match.h"
#include "accessibility/messages.h"
#include "main/arguments.h"
#include "main/replies.h"

namespace driver {

namespace {

/// The control that the words describe. Without one the refusal has been written.
std::optional<Match> matchFor(const Arguments& arguments) {
  const Point near = pointIn(arguments, 4);
  std::optional<Match> match = axMatch(axApp(arguments[2]), arguments[3], near);
  if (!match) emit(refusal("no element"));
  return match;
}

}  // namespace

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
  std::optional<Match> match = matchFor(arguments);
  if (!match) return;
  emit({{"ok", true},
        {"element", axInfo(match->element, Batch(structureAttributes))},
        {"matchedBy", wordOf(match->kind)}});
}

void axPressMatchCommand(const Arguments& arguments) {
  const std::optional<Match> match = matchFor(arguments);
  if (!match) return;
  Reply reply = actionReply(messages::perform(match->element.element(), "AXPress"));
  reply["element"] = axInfo(match->element.element());
  reply["matchedBy"] = wordOf(match->kind);
  emit(reply);
}

}  // namespace driver
