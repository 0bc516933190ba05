#include "accessibility/listing.h"

#include <utility>

#include "accessibility/commands.h"
#include "accessibility/element.h"
#include "accessibility/info.h"
#include "accessibility/inner_text.h"
#include "accessibility/roles.h"
#include "accessibility/walk.h"
#include "main/replies.h"

namespace driver {

namespace {

bool isListed(Snapshot& element) {
  if (!hasRole(actionableRoles, element.role())) return false;
  const std::optional<Rect> frame = axFrame(element);
  return frame && frame->width > 1 && frame->height > 1;
}

Value::Object entryFor(Snapshot& element, const Batch& each) {
  Value::Object entry = axInfo(element, each);
  if (entry["label"] == Value("") && !hasRole(textRoles, element.role())) {
    entry["label"] = axText(element, each);
  }
  if (element.isFalse(Attribute::enabled)) entry["disabled"] = true;
  return entry;
}

}  // namespace

Value::List axList(const ax::Element& application, std::size_t limit) {
  Value::List entries;
  Walk walk(axWindows(application), infoAttributes | AttributeSet{Attribute::enabled},
            controlBounds);
  while (entries.size() < limit) {
    Snapshot* element = walk.next();
    if (element == nullptr) break;
    if (isListed(*element)) entries.emplace_back(entryFor(*element, walk.batch()));
  }
  return entries;
}

void axListCommand(const Arguments& arguments) {
  emit({{"ok", true}, {"elements", axList(axApp(arguments[2]))}});
}

}  // namespace driver
