#include <algorithm>

#include "simulator/applications.h"
#include "simulator/element_text.h"
#include "simulator/reactions.h"
#include "simulator/roles.h"
#include "simulator/windows.h"

namespace simulator {

namespace {

bool isEnabled(const Element& element) {
  const auto found = element.attributes.find("AXEnabled");
  if (found == element.attributes.end()) return true;
  const bool* enabled = std::get_if<bool>(&found->second);
  return enabled == nullptr || *enabled;
}

std::string described(const Element& element) {
  const std::string& label = labelOf(element);
  return label.empty() ? element.role : element.role + " \"" + label + '"';
}

bool handles(const Element& element, bool right) {
  if (right) return !element.onRightClick.empty();
  return !element.onClick.empty() || takesText(element.role);
}

/// The element, or the nearest one around it within the window, that does something with a click.
Element* receiver(Application& application, ElementId hit, bool right) {
  Element* element = findElement(application, hit);
  const WindowNumber window = element == nullptr ? 0 : element->window;
  while (element != nullptr && element->window == window && !handles(*element, right)) {
    element = findElement(application, element->parent);
  }
  return element != nullptr && element->window == window ? element : nullptr;
}

/// Gives the window the application's own focus; its place in the order stays.
void focusWindow(Application& application, const Window& window) {
  if (window.element == 0) return;
  application.focusedWindow = window.element;
  const Element* focused = findElement(application, application.focusedElement);
  if (focused != nullptr && focused->window != window.number) application.focusedElement = 0;
}

void takeFocus(Application& application, Element& element) {
  application.focusedElement = element.id;
  element.attributes["AXSelectedTextRange"] = ax::Range{utf16Length(textOf(element)), 0};
}

}  // namespace

ElementId elementAt(const Application& application, const Window& window, Point point) {
  if (!driver::contains(window.frame, point)) return 0;
  // Ids follow the order in which elements are drawn: a child after its parent, a later sibling
  // after an earlier one with all that is in it.
  const auto found = std::find_if(application.elements.rbegin(), application.elements.rend(),
                                  [&](const Element& element) {
                                    return element.window == window.number && !element.removed &&
                                           element.frame && driver::contains(*element.frame, point);
                                  });
  return found == application.elements.rend() ? window.element : found->id;
}

std::string click(World& world, Pid pid, WindowNumber number, Point point, bool right) {
  Application* application = findApplication(world, pid);
  const Window* window = findWindow(world, number);
  if (application == nullptr || window == nullptr || window->owner != pid) {
    return "clicked a window that is gone";
  }
  if (application->hangs) return "clicked an application that hangs";
  if (const Window* sheet = sheetOf(world, number)) {
    return "clicked a window behind its sheet " + std::to_string(sheet->number);
  }
  focusWindow(*application, *window);
  const ElementId hit = elementAt(*application, *window, point);
  Element* element = receiver(*application, hit, right);
  const std::string verb = right ? "right-clicked " : "clicked ";
  if (element == nullptr) {
    const Element* below = findElement(*application, hit);
    return verb + (below == nullptr ? "nothing" : described(*below)) + ", which does nothing";
  }
  if (!isEnabled(*element)) return verb + described(*element) + ", which is disabled";
  const bool focuses = !right && takesText(element->role);
  std::string sentence = (focuses ? "focused " : right ? verb : "pressed ") + described(*element);
  if (focuses) takeFocus(*application, *element);
  react(world, *application, element->id, right);
  return sentence;
}

}  // namespace simulator
