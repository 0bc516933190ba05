#include "accessibility/element.h"

#include <cstddef>
#include <cstdint>

#include "accessibility/messages.h"
#include "accessibility/scope.h"
#include "main/globals.h"
#include "main/replies.h"
#include "main/state_queries.h"
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
  // The list is asked for one window, and is looked through all the same: the title of another one
  // must not decide about this.
  if (!list) return std::nullopt;
  for (const windowserver::Window& window : *list) {
    if (window.number == std::int64_t{number}) return window;
  }
  return std::nullopt;
}

}  // namespace

ax::Element axApp(const std::string& reference) {
  const std::optional<workspace::Application> app = runningApp(reference);
  if (!app) fail("app not running: " + reference);
  return axApp(app->pid);
}

ax::Element axApp(platform::Pid pid) {
  ax::Element application = ax::application(pid);
  // Electron builds its tree once the first is set, other Chromium once the second is. An older
  // Electron answers with an error although it does, so the answers are not looked at.
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
    // A list that is not what it should be is no list: what is left of it might be misread.
    if (element == nullptr) return {};
    elements.push_back(*element);
  }
  return elements;
}

std::vector<ax::Element> axWindows(const ax::Element& application) {
  std::vector<ax::Element> windows = elementsIn(axAttr(application, "AXWindows"));
  if (!globals().windowScope) return windows;
  // Each window is a question to the server or to the application, and a list may have no end.
  if (windows.size() > windowsAskedMax) {
    windows.erase(windows.begin() + static_cast<std::ptrdiff_t>(windowsAskedMax), windows.end());
  }
  std::erase_if(windows, [](const ax::Element& window) { return !axWindowInScope(window); });
  return windows;
}

bool axWindowInScope(const ax::Element& window) {
  if (!globals().windowScope) return true;
  // The server's title is what the user and the capture see; an application may tell another.
  // Without the permission to record the screen the server tells no titles, and then no window is
  // in scope.
  if (const std::optional<platform::WindowNumber> number = messages::windowNumber(window)) {
    if (const auto described = serverWindow(*number)) return inScope(described->name);
  }
  return inScope(textIn(axAttr(window, "AXTitle")));
}

bool isInWindowScope(const ax::Element& element) {
  if (!globals().windowScope) return true;
  const std::optional<ax::Element> window = axElement(element, "AXWindow");
  return window && axWindowInScope(*window);
}

std::vector<std::string> axActions(const ax::Element& element) {
  return messages::actionNames(element);
}

}  // namespace driver
