#include "simulator/world/presses.h"

#include <algorithm>

#include "simulator/world/arranging.h"
#include "simulator/world/attributes.h"
#include "simulator/world/controls.h"
#include "simulator/world/element_text.h"
#include "simulator/world/elements.h"
#include "simulator/world/marking.h"
#include "simulator/world/reactions.h"
#include "simulator/world/sight.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace {

/// A click as an element takes it.
struct Click {
  bool right = false;
  bool second = false;  // of a double click
};

bool handles(const Application& application, const Element& element, Click click) {
  if (click.right) return !element.onRightClick.empty();
  if (click.second && !element.onDoubleClick.empty()) return true;
  return !element.onClick.empty() || isTextInput(element) || isItem(application, element) ||
         openerFor(application, element) != nullptr;
}

/// The element, or the nearest one around it within the window, that does something with a click.
Element* receiver(Application& application, ElementId hit, Click click) {
  Element* element = findElement(application, hit);
  const WindowNumber window = element == nullptr ? 0 : element->window;
  while (element != nullptr && element->window == window &&
         !handles(application, *element, click)) {
    element = findElement(application, element->parent);
  }
  return element != nullptr && element->window == window ? element : nullptr;
}

/// Gives the window the application's own focus; its place in the order stays.
void focusWindow(Application& application, const Window& window) {
  if (window.element == 0) return;
  application.focusedWindow = window.element;
  const Element* focused = findElement(application, application.focusedElement);
  if (focused == nullptr || focused->window == window.number) return;
  application.focusedElement = 0;
  commitMarked(application);
}

/// Unlike `focusField`: the user's click says where the caret is to be, and here that is the end.
void takeFocus(Application& application, Element& element) {
  commitMarked(application);
  application.focusedElement = element.id;
  element.attributes["AXSelectedTextRange"] = ax::Range{utf16Length(textOf(element)), 0};
}

/// A click beside an open menu of the window closes it and does nothing else.
bool closesMenu(Application& application, const Window& window, ElementId clicked) {
  const Element* menu = findElement(application, application.openMenu);
  if (menu == nullptr || menu->window != window.number) return false;
  const Element* element = findElement(application, clicked);
  if (element != nullptr && isInOpenMenu(application, *element)) return false;
  application.openMenu = 0;
  return true;
}

/// The last of these that is there and contains the point.
template <class Qualifies>
ElementId hit(const Application& application, const Window* window, Point point,
              Qualifies qualifies) {
  const auto isHit = [&](const Element& element) {
    return !element.removed && element.frame && driver::contains(*element.frame, point) &&
           qualifies(element) && isInSightAt(application, element, point) &&
           isThere(application, window, element);
  };
  if (application.rearranged) {
    const std::vector<const Element*> ordered = drawingOrder(application);
    const auto last = std::find_if(ordered.rbegin(), ordered.rend(),
                                   [&](const Element* element) { return isHit(*element); });
    return last == ordered.rend() ? 0 : (*last)->id;
  }
  // Ids follow the order in which elements are drawn: a child after its parent, a later sibling
  // after an earlier one with all that is in it.
  const auto last = std::find_if(application.elements.rbegin(), application.elements.rend(), isHit);
  return last == application.elements.rend() ? 0 : last->id;
}

}  // namespace

ElementId elementAt(const Application& application, const Window& window, Point point) {
  if (!driver::contains(window.frame, point)) return 0;
  const auto isIn = [&](const Element& element) { return element.window == window.number; };
  const ElementId inMenu = hit(application, &window, point, [&](const Element& element) {
    return isIn(element) && isInOpenMenu(application, element);
  });
  if (inMenu != 0) return inMenu;
  const ElementId found = hit(application, &window, point, isIn);
  return found == 0 ? window.element : found;
}

ElementId elementAtPoint(const World& world, const Application& application, Point point,
                         Microseconds now) {
  if (!hasTree(application, now)) return 0;
  if (world.frontmost == application.pid) {
    const ElementId inMenuBar =
        hit(application, nullptr, point, [](const Element& each) { return each.window == 0; });
    if (inMenuBar != 0) return inMenuBar;
  }
  for (const Window& window : world.windows) {
    const bool isCandidate =
        window.owner == application.pid && window.onScreen && window.element != 0;
    const ElementId found = isCandidate ? elementAt(application, window, point) : 0;
    if (found != 0) return found;
  }
  return 0;
}

std::string press(World& world, Application& application, ElementId id) {
  const Element& element = *findElement(application, id);
  std::string sentence = "pressed " + described(element);
  const bool reacts = handles(application, element, Click());
  if (isItem(application, element)) {
    chooseItem(application, id);
  } else if (const Element* opener = openerFor(application, element)) {
    toggleMenu(application, *opener);
  }
  // An item is chosen before it reacts: a reaction may take the menu away, or open a window over
  // it.
  const std::string said = react(world, application, id, false);
  return sentence + (reacts ? said : ", which does nothing");
}

std::string click(World& world, Pid pid, WindowNumber number, Point point, bool right,
                  std::int64_t state) {
  Application* application = findApplication(world, pid);
  const Window* window = findWindow(world, number);
  if (application == nullptr || window == nullptr || window->owner != pid) {
    return "clicked a window that is gone";
  }
  if (application->hangs) return "clicked an application that hangs";
  // What a sheet hangs on takes no clicks until the sheet has closed.
  if (const Window* sheet = sheetOf(world, number)) {
    return "clicked a window behind its sheet " + std::to_string(sheet->number);
  }
  focusWindow(*application, *window);
  const ElementId hitElement = elementAt(*application, *window, point);
  if (closesMenu(*application, *window, hitElement)) return "closed a menu";
  Element* element = receiver(*application, hitElement, {right, state == 2});
  const std::string verb = right ? "right-clicked " : "clicked ";
  if (element == nullptr) {
    const Element* below = findElement(*application, hitElement);
    return verb + (below == nullptr ? "nothing" : described(*below)) + ", which does nothing";
  }
  if (!isEnabled(*element)) return verb + described(*element) + ", which is disabled";
  if (right) {
    const std::string sentence = verb + described(*element);
    return sentence + react(world, *application, element->id, true);
  }
  if (state == 2 && !element->onDoubleClick.empty()) {
    const std::string sentence = "double-clicked " + described(*element);
    return sentence + reactTo(world, *application, element->id, &Element::onDoubleClick);
  }
  if (!isTextInput(*element)) return press(world, *application, element->id);
  const std::string sentence = "focused " + described(*element);
  takeFocus(*application, *element);
  return sentence + react(world, *application, element->id, false);
}

}  // namespace simulator
