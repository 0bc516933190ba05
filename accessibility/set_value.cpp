#include <cstdint>
#include <optional>

#include "accessibility/actionable.h"
#include "accessibility/command_words.h"
#include "accessibility/commands.h"
#include "accessibility/element.h"
#include "accessibility/info.h"
#include "accessibility/messages.h"
#include "main/replies.h"
#include "platform/loop.h"

namespace driver {

namespace {

constexpr std::uint32_t settlingMicroseconds = 200'000;

}  // namespace

void axSetValueCommand(const Arguments& arguments) {
  const Point point = pointIn(arguments, 3);
  const std::optional<Snapshot> found = axActionable(point, axApp(arguments[2]));
  if (!found) {
    emit(refusal("no element"));
    return;
  }
  const ax::Element& element = found->element();
  messages::setAttribute(element, "AXFocused", ax::Value{true});
  Reply reply = actionReply(messages::setAttribute(element, "AXValue", ax::Value{arguments[5]}));
  loop::sleepMicroseconds(settlingMicroseconds);
  reply["element"] = axInfo(element);
  emit(reply);
}

}  // namespace driver
