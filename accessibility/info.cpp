#include "accessibility/info.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "accessibility/roles.h"
#include "accessibility/text_field.h"
#include "platform/text.h"

namespace driver {

namespace {

// A value may be a whole document.
constexpr std::size_t valueCharactersMax = 2000;

}  // namespace

Value::Object axInfo(Snapshot& element, const Batch& each) {
  element.read(infoAttributes | AttributeSet{Attribute::value});
  Value::Object info = infoWithoutValue(element, each);
  if (const std::string* value = element.text(Attribute::value)) {
    info["value"] = text::prefix(*value, valueCharactersMax);
  }
  return info;
}

Value::Object axInfo(const ax::Element& element) {
  Snapshot now(element);
  return axInfo(now, Batch(structureAttributes));
}

Value::Object infoWithoutValue(Snapshot& element, const Batch& each) {
  element.read(infoAttributes);
  Value::Object info = {{"role", std::string(element.role())}, {"label", axLabel(element)}};
  if (const auto frame = axFrame(element)) info["frame"] = geometryOf(*frame);
  if (hasRole(textRoles, element.role())) {
    ComposerText composer = axComposerText(element, each);
    // An empty field that was read to the end says nothing that its value does not.
    if (!composer.text.empty() || !composer.complete) {
      info["textValue"] = std::move(composer.text);
      info["textValueComplete"] = composer.complete;
    }
  }
  return info;
}

std::string quoted(const std::string& text) { return "\"" + text + "\""; }

Reply actionReply(ax::Error error) {
  return {{"ok", error == ax::Error::success}, {"axError", static_cast<std::int32_t>(error)}};
}

}  // namespace driver
