#include "simulator/input/key_window.h"

#include <algorithm>

#include "simulator/world/elements.h"
#include "simulator/world/fields.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace {

bool isIn(const Application& application, ElementId id, const Window& window) {
  const Element* element = findElement(application, id);
  return element != nullptr && element->window == window.number;
}

ElementId firstField(const World& world, const Application& application, const Window& window) {
  const auto& elements = application.elements;
  const auto found = std::find_if(elements.begin(), elements.end(), [&](const Element& each) {
    return !each.removed && each.window == window.number && isTextInput(each) && isEnabled(each) &&
           isThere(world, application, each);
  });
  return found == elements.end() ? 0 : found->id;
}

/// What has the keyboard in a window that gets it.
ElementId responder(const World& world, const Application& application, const Window& window) {
  if (isIn(application, application.focusedElement, window)) return application.focusedElement;
  if (isIn(application, window.hadKeyboard, window)) return window.hadKeyboard;
  // Chromium leaves it to the page who has the keyboard, and the page has not been asked.
  const bool appKit = application.kind == ApplicationKind::appKit;
  return appKit ? firstField(world, application, window) : 0;
}

}  // namespace

WindowNumber keyWindowOf(const Application& application) {
  const Element* focused = findElement(application, application.focusedWindow);
  return focused == nullptr ? 0 : focused->window;
}

WindowNumber innermostSheet(const World& world, WindowNumber number) {
  // With two sheets there is no telling which is meant: the window itself then.
  auto sheets = openSheets(world, number);
  while (sheets.size() == 1) {
    number = sheets.front();
    sheets = openSheets(world, number);
  }
  return number;
}

void makeKeyWindow(World& world, Application& application, WindowNumber number) {
  if (Window* before = findWindow(world, keyWindowOf(application))) {
    if (isIn(application, application.focusedElement, *before)) {
      before->hadKeyboard = application.focusedElement;
    }
  }
  const Window* window = findWindow(world, innermostSheet(world, number));
  if (window == nullptr) return;
  application.focusedWindow = window->element;
  application.focusedElement = responder(world, application, *window);
  Element* field = findElement(application, application.focusedElement);
  if (field != nullptr && isTextInput(*field)) focusField(application, *field);
}

Element* keyboardField(const World& world, Application& application) {
  Element* element = findElement(application, application.focusedElement);
  if (element == nullptr || !isTextInput(*element) || !isEnabled(*element)) return nullptr;
  if (!isThere(world, application, *element)) return nullptr;
  const WindowNumber key = keyWindowOf(application);
  return key == 0 || key == element->window ? element : nullptr;
}

}  // namespace simulator
