#include "accessibility/info.h"

#include <cstddef>
#include <string>
#include <utility>

#include "accessibility/roles.h"
#include "accessibility/text_field.h"
#include "main/arguments.h"
#include "platform/text.h"

namespace driver {

namespace {

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
  if (const auto frame = axFrame(element)) info["frame"] = frameInfo(*frame);
  if (hasRole(textRoles, element.role())) {
    ComposerText composer = axComposerText(element, each);
    if (!composer.text.empty() || !composer.complete) {
      info["textValue"] = std::move(composer.text);
      info["textValueComplete"] = composer.complete;
    }
  }
  return info;
}

Value::Object frameInfo(const platform::Rect& frame) {
  return {{"x", frame.x}, {"y", frame.y}, {"width", frame.width}, {"height", frame.height}};
}

platform::Point pointIn(const Arguments& arguments, std::size_t index) {
  const double x = num(arguments, index);
  return {x, num(arguments, index + 1)};
}

std::string quoted(const std::string& text) { return "\"" + text + "\""; }

std::string joined(const std::vector<std::string>& texts, const std::string& separator) {
  std::string result;
  for (const std::string& text : texts) {
    if (&text != &texts.front()) result += separator;
    result += text;
  }
  return result;
}

std::int32_t codeOf(ax::Error error) { return static_cast<std::int32_t>(error); }

Reply actionReply(ax::Error error) {
  return {{"ok", error == ax::Error::success}, {"axError", codeOf(error)}};
}

}  // namespace driver
