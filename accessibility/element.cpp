#include "accessibility/element.h"

#include <algorithm>
#include <cstdint>

#include "accessibility/messages.h"
#include "accessibility/scope.h"
#include "base/geometry.h"
#include "main/globals.h"
#include "main/replies.h"
#include "main/state_queries.h"
#include "platform/text.h"
#include "platform/window_server.h"

namespace driver {

namespace {

std::optional<std::string> textIn(const std::optional<ax::Value>& value) {
  const auto* text = value ? value->get<std::string>() : nullptr;
  return text ? std::optional(*text) : std::nullopt;
}

/// The server's description of the window, if it has one.
std::optional<windowserver::Window> serverWindow(platform::WindowNumber number) {
  const auto list = windowserver::description(number);
  if (!list) return std::nullopt;
  for (const windowserver::Window& window : *list) {
    if (window.number == std::int64_t{number}) return window;
  }
  return std::nullopt;
}

/// Pushes what a walk with `budget` visits left can still reach, the first child on top.
void pushChildren(std::vector<ax::Element>& stack, const std::vector<ax::Element>& children,
                  std::size_t budget) {
  const std::size_t count = std::min(children.size(), budget);
  for (std::size_t i = count; i > 0; --i) stack.push_back(children[i - 1]);
}

}  // namespace

ax::Element axApp(const std::string& reference) {
  const std::optional<workspace::Application> app = runningApp(reference);
  if (!app) fail("app not running: " + reference);
  ax::Element application = ax::application(app->pid);
  messages::setAttribute(application, "AXManualAccessibility", ax::Value{true});
  messages::setAttribute(application, "AXEnhancedUserInterface", ax::Value{true});
  return application;
}

std::optional<ax::Value> axAttr(const ax::Element& element, const char* name) {
  return messages::attribute(element, name).value;
}

std::optional<ax::Element> axElement(const ax::Element& element, const char* name) {
  return elementIn(axAttr(element, name));
}

std::vector<std::string> axTexts(const ax::Element& element,
                                 const std::vector<const char*>& names) {
  std::vector<std::string> texts;
  for (const ax::Slot& slot : messages::attributes(element, names)) {
    if (const auto text = textIn(slot.value)) texts.push_back(*text);
  }
  return texts;
}

std::optional<ax::Element> elementIn(const std::optional<ax::Value>& value) {
  const auto* element = value ? value->get<ax::Element>() : nullptr;
  return element ? std::optional(*element) : std::nullopt;
}

std::vector<ax::Element> elementsIn(const std::optional<ax::Value>& value) {
  const auto* list = value ? value->get<std::vector<ax::Value>>() : nullptr;
  if (list == nullptr) return {};
  std::vector<ax::Element> elements;
  elements.reserve(list->size());
  for (const ax::Value& item : *list) {
    const auto* element = item.get<ax::Element>();
    if (element == nullptr) return {};
    elements.push_back(*element);
  }
  return elements;
}

std::vector<ax::Element> axWindows(const ax::Element& application) {
  std::vector<ax::Element> windows = elementsIn(axAttr(application, "AXWindows"));
  std::erase_if(windows, [](const ax::Element& window) { return !axWindowInScope(window); });
  return windows;
}

bool axWindowInScope(const ax::Element& window) {
  if (!globals().windowScope) return true;
  // The server's title is what the user and the capture see.
  if (const std::optional<platform::WindowNumber> number = messages::windowNumber(window)) {
    if (const auto described = serverWindow(*number)) return inScope(described->name);
  }
  return inScope(textIn(axAttr(window, "AXTitle")));
}

std::optional<platform::Rect> axFrame(const ax::Element& element) {
  const std::vector<ax::Slot> slots = messages::attributes(element, {"AXPosition", "AXSize"});
  const auto* position = slots[0].value ? slots[0].value->get<platform::Point>() : nullptr;
  const auto* size = slots[1].value ? slots[1].value->get<platform::Size>() : nullptr;
  if (position == nullptr || size == nullptr) return std::nullopt;
  const platform::Rect frame{position->x, position->y, size->width, size->height};
  return isFinite(frame) ? std::optional(frame) : std::nullopt;
}

std::string axLabel(const ax::Element& element) {
  const std::vector<std::string> texts =
      axTexts(element, {"AXTitle", "AXDescription", "AXPlaceholderValue", "AXHelp"});
  for (const std::string& text : texts) {
    if (!text.empty()) return text;
  }
  return "";
}

std::string axText(const ax::Element& element, int budget, std::size_t maxLength) {
  std::string joined;
  std::vector<ax::Element> stack = {element};
  for (auto left = static_cast<std::size_t>(std::max(budget, 0)); left > 0 && !stack.empty();) {
    const ax::Element visited = stack.back();
    stack.pop_back();
    --left;
    const std::vector<ax::Slot> slots = messages::attributes(visited, {"AXRole", "AXChildren"});
    if (textIn(slots[0].value) == "AXStaticText") {
      const std::string value = textIn(axAttr(visited, "AXValue")).value_or("");
      if (!value.empty() && !joined.empty()) joined += ' ';
      joined += value;
    }
    pushChildren(stack, elementsIn(slots[1].value), left);
  }
  return text::prefix(joined, maxLength);
}

std::vector<std::string> axActions(const ax::Element& element) {
  return messages::actionNames(element);
}

}  // namespace driver
