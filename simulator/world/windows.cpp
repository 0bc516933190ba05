#include "simulator/world/windows.h"

#include <algorithm>
#include <utility>

#include "simulator/world/elements.h"
#include "simulator/world/roles.h"

namespace simulator {

namespace {

void removeElements(Application& application, WindowNumber window) {
  for (Element& element : application.elements) {
    if (element.window != window || element.removed) continue;
    element.removed = true;
    if (application.focusedElement == element.id) application.focusedElement = 0;
    if (application.openMenu == element.id) application.openMenu = 0;
  }
}

void removeFromTree(const World& world, Application& application, const Window& window) {
  const Element* element = findElement(application, window.element);
  if (element == nullptr) return;
  Element* parent = findElement(application, element->parent);
  if (parent != nullptr) std::erase(parent->children, window.element);
  std::erase(application.windows, window.element);
  if (application.focusedWindow != window.element) return;
  const Window* below = findWindow(world, window.sheetOf);
  application.focusedWindow = below != nullptr              ? below->element
                              : application.windows.empty() ? 0
                                                            : application.windows.front();
}

void closeAlone(World& world, WindowNumber number) {
  const Window* window = findWindow(world, number);
  if (window == nullptr) return;
  if (Application* application = findApplication(world, window->owner)) {
    removeFromTree(world, *application, *window);
    removeElements(*application, number);
    // Focus that was held for a window goes with it.
    if (application->focusByRecord == number) application->focusByRecord = 0;
    if (application->keyByRecord == number) application->keyByRecord = 0;
    if (application->madeKey == number) application->madeKey = 0;
  }
  world.windows.erase(world.windows.begin() + (window - world.windows.data()));
}

bool mayBeInFront(const Application& application) {
  return application.running && !application.hidden &&
         application.policy == workspace::ActivationPolicy::regular;
}

/// Who comes to front when the front application has gone: the owner of what the user sees next, or
/// else any application that has a place in the Dock.
Pid successor(const World& world) {
  for (const Window& window : world.windows) {
    const Application* owner = findApplication(world, window.owner);
    if (window.onScreen && owner != nullptr && mayBeInFront(*owner)) return owner->pid;
  }
  const auto next =
      std::find_if(world.applications.begin(), world.applications.end(), mayBeInFront);
  return next == world.applications.end() ? 0 : next->pid;
}

/// What is to be on screen waits until its application is not hidden.
void setOnScreen(const Application& application, Window& window, bool wanted) {
  window.onScreen = wanted && !application.hidden;
  window.hiddenWithOwner = wanted && application.hidden;
}

/// A window that was closed shows itself to accessibility again.
void joinTree(const World& world, Application& application, const Window& window) {
  if (window.element == 0) return;
  const Window* below = findWindow(world, window.sheetOf);
  Element* parent = below == nullptr ? nullptr : findElement(application, below->element);
  auto& ids = parent == nullptr ? application.windows : parent->children;
  if (std::find(ids.begin(), ids.end(), window.element) == ids.end()) {
    ids.push_back(window.element);
  }
}

Rect sheetFrame(const Rect& parent) {
  constexpr Size size{320, 132};
  constexpr double titleBar = 28;
  return {parent.x + (parent.width - size.width) / 2, parent.y + titleBar, size.width, size.height};
}

ElementId addSheetElements(Application& application, const Window& sheet, ElementId parent,
                           const std::string& text) {
  const auto [x, y, width, height] = sheet.frame;
  const ElementId id = addElement(application, parent, sheet.number, sheet.frame, "AXSheet").id;
  addElement(application, id, sheet.number, Rect{x + 20, y + 20, width - 40, 52}, "AXStaticText")
      .attributes["AXValue"] = text;
  Element& button = addElement(application, id, sheet.number,
                               Rect{x + width - 100, y + height - 44, 80, 24}, "AXButton");
  button.attributes["AXTitle"] = std::string("OK");
  button.actions = {"AXPress"};
  button.onClick.push_back({closeOwnWindow});
  return id;
}

/// A sheet that is part of its window.
bool isOpen(const World& world, const Window& sheet) {
  const Application* application = findApplication(world, sheet.owner);
  const Window* below = findWindow(world, sheet.sheetOf);
  const Element* parent = application == nullptr || below == nullptr
                              ? nullptr
                              : findElement(*application, below->element);
  if (parent == nullptr) return sheet.onScreen;
  const auto& children = parent->children;
  return std::find(children.begin(), children.end(), sheet.element) != children.end();
}

}  // namespace

void sortLayers(World& world) {
  std::stable_sort(world.windows.begin(), world.windows.end(),
                   [](const Window& a, const Window& b) { return a.layer > b.layer; });
}

void raiseWindow(World& world, WindowNumber number) {
  const Window* window = findWindow(world, number);
  if (window == nullptr) return;
  const WindowNumber root = rootOf(world, *window).number;
  std::vector<Window> raised;
  std::vector<Window> others;
  for (const Window& each : world.windows) {
    (rootOf(world, each).number == root ? raised : others).push_back(each);
  }
  std::move(others.begin(), others.end(), std::back_inserter(raised));
  world.windows = std::move(raised);
  sortLayers(world);
}

void bringToFront(World& world, Pid pid) {
  world.frontmost = pid;
  std::stable_partition(world.windows.begin(), world.windows.end(),
                        [&](const Window& window) { return window.owner == pid; });
  sortLayers(world);
}

void raiseWithin(World& world, WindowNumber number) {
  const Window* window = findWindow(world, number);
  if (window == nullptr) return;
  const auto raised = world.windows.begin() + (window - world.windows.data());
  const auto place = std::find_if(world.windows.begin(), raised, [&](const Window& each) {
    return each.owner == window->owner && each.layer == window->layer;
  });
  std::rotate(place, raised, raised + 1);
  // A sheet hangs on its window wherever that goes.
  if (const Window* sheet = sheetOf(world, number)) raiseWithin(world, sheet->number);
}

bool showWindow(World& world, Application& application, const std::string& title) {
  Window* window = findTitled(world, application.pid, title);
  if (window == nullptr) return false;
  setOnScreen(application, *window, true);
  joinTree(world, application, *window);
  if (Element* element = findElement(application, window->element)) {
    const auto minimized = element->attributes.find("AXMinimized");
    if (minimized != element->attributes.end()) minimized->second = false;
  }
  application.focusedWindow = window->element;
  raiseWithin(world, window->number);
  return true;
}

void setMinimized(World& world, Application& application, WindowNumber number, bool minimized) {
  Window* window = findWindow(world, number);
  Element* element = window == nullptr ? nullptr : findElement(application, window->element);
  if (element == nullptr) return;
  element->attributes["AXMinimized"] = minimized;
  setOnScreen(application, *window, !minimized);
  if (!minimized) raiseWithin(world, number);
}

void setHidden(World& world, Application& application, bool hidden) {
  application.hidden = hidden;
  for (Window& window : world.windows) {
    if (window.owner != application.pid) continue;
    if (hidden && window.onScreen) setOnScreen(application, window, true);
    if (!hidden && window.hiddenWithOwner) setOnScreen(application, window, true);
  }
}

void openSheet(World& world, Application& application, WindowNumber parent,
               const std::string& text) {
  const Window* below = findWindow(world, parent);
  if (below == nullptr) return;
  Window sheet;
  sheet.number = ++world.lastWindow;
  sheet.owner = application.pid;
  sheet.frame = sheetFrame(below->frame);
  sheet.layer = below->layer;
  sheet.onScreen = below->onScreen;
  sheet.hiddenWithOwner = below->hiddenWithOwner;
  sheet.sheetOf = parent;
  sheet.element = addSheetElements(application, sheet, below->element, text);
  application.focusedWindow = sheet.element;
  application.focusedElement = 0;
  world.windows.insert(world.windows.begin() + (below - world.windows.data()), std::move(sheet));
}

void closeWindow(World& world, WindowNumber number) {
  if (findWindow(world, number) == nullptr) return;
  std::vector<WindowNumber> closing{number};
  for (std::size_t i = 0; i < closing.size(); ++i) {
    for (const Window& window : world.windows) {
      if (window.sheetOf == closing[i]) closing.push_back(window.number);
    }
  }
  // The innermost sheet first, so that each leaves the focus to the one below.
  std::for_each(closing.rbegin(), closing.rend(),
                [&](WindowNumber each) { closeAlone(world, each); });
}

WindowNumber windowMeant(const Application& application, ElementId id) {
  // One that has gone with its window means that one still, and no other.
  const WindowNumber own =
      id == 0 ? 0 : application.elements[static_cast<std::size_t>(id) - 1].window;
  if (own != 0) return own;
  const Element* focused = findElement(application, application.focusedWindow);
  return focused == nullptr ? 0 : focused->window;
}

std::string closeOwnWindow(const Reacting& with) {
  const auto& title = with.reaction.window;
  const Window* window = title
                             ? findTitled(with.world, with.application.pid, *title)
                             : findWindow(with.world, windowMeant(with.application, with.element));
  if (window == nullptr)
    return title ? "finds no window titled \"" + *title + '"' : "finds no window";
  closeWindow(with.world, window->number);
  return "";
}

void presentWindows(World& world, Application& application,
                    const std::vector<WindowNumber>& numbers) {
  for (const WindowNumber number : numbers) {
    Window& window = *findWindow(world, number);
    if (!window.onScreen) continue;
    setOnScreen(application, window, true);
    if (window.element != 0) application.focusedWindow = window.element;
    raiseWithin(world, number);
  }
  sortLayers(world);
  if (world.frontmost == application.pid) bringToFront(world, application.pid);
}

Window* topmostAt(World& world, Point point) {
  const auto found =
      std::find_if(world.windows.begin(), world.windows.end(), [&](const Window& window) {
        return window.onScreen && driver::contains(window.frame, point);
      });
  return found == world.windows.end() ? nullptr : &*found;
}

const Window& rootOf(const World& world, const Window& window) {
  const Window* root = &window;
  while (root->sheetOf != 0) {
    const Window* parent = findWindow(world, root->sheetOf);
    if (parent == nullptr) break;
    root = parent;
  }
  return *root;
}

const Window* sheetOf(const World& world, WindowNumber number) {
  const auto found = std::find_if(
      world.windows.begin(), world.windows.end(),
      [&](const Window& window) { return window.sheetOf == number && isOpen(world, window); });
  return found == world.windows.end() ? nullptr : &*found;
}

std::vector<WindowNumber> openSheets(const World& world, WindowNumber number) {
  std::vector<WindowNumber> numbers;
  for (const Window& window : world.windows) {
    if (window.sheetOf == number && isOpen(world, window)) numbers.push_back(window.number);
  }
  return numbers;
}

namespace reactions {

std::string openWindow(const Reacting& with) {
  const Added added = with.world.adder(with.world, with.application.pid, 0, with.reaction);
  if (!added.error.empty()) return "can open nothing: " + added.error;
  return added.count == 0 ? "opens no window" : "";
}

}  // namespace reactions

void quitApplication(World& world, Pid pid) {
  Application* application = findApplication(world, pid);
  if (application == nullptr) return;
  application->running = false;
  application->windows.clear();
  application->focusedWindow = application->focusedElement = 0;
  for (Element& element : application->elements) element.removed = true;
  std::erase_if(world.windows, [&](const Window& window) { return window.owner == pid; });
  if (world.frontmost != pid) return;
  world.frontmost = successor(world);
  if (world.frontmost != 0) bringToFront(world, world.frontmost);
}

}  // namespace simulator
