#include "simulator/drawing/pictures.h"

#include <algorithm>
#include <cmath>

#include "simulator/drawing/canvas.h"
#include "simulator/drawing/covers.h"
#include "simulator/drawing/desktop.h"
#include "simulator/drawing/look.h"
#include "simulator/drawing/windows.h"
#include "simulator/world/arranging.h"
#include "simulator/world/controls.h"
#include "simulator/world/element_text.h"
#include "simulator/world/elements.h"
#include "simulator/world/scrolling.h"
#include "simulator/world/sight.h"

namespace simulator {

namespace {

constexpr std::uint64_t mostPixels = 16'384;  // in either direction

bool isDrawable(const Picture& picture) {
  return picture.width > 0 && picture.height > 0 && picture.width <= mostPixels &&
         picture.height <= mostPixels && driver::isFinite(picture.source) &&
         driver::area(picture.source) > 0;
}

std::uint64_t pixels(double points, double scale) {
  const double count = std::floor(points * scale);
  // Anything larger is not drawn; the bound keeps the conversion defined.
  return count > 0 ? static_cast<std::uint64_t>(std::min(count, 1e9)) : 0;
}

/// The window has the application's focus, or a sheet of it has.
bool hasFocus(const Application& application, const Window& window) {
  const Element* focused = findElement(application, application.focusedWindow);
  while (focused != nullptr && focused->id != window.element) {
    focused = findElement(application, focused->parent);
  }
  return focused != nullptr;
}

/// A composer draws its text itself.
bool showsComposedText(const Application& application, const Element& element) {
  if (application.habits.empty() || element.role != "AXStaticText") return false;
  const Element* around = &element;
  while (around != nullptr && !habitsOf(application, around->id).isComposer) {
    around = findElement(application, around->parent);
  }
  return around != nullptr;
}

Element asDrawn(const Element& element) {
  Element drawn = element;
  if (isSecure(element)) drawn.attributes["AXValue"] = bullets(textOf(element));
  return drawn;
}

/// The titles of the application's menus, as far as they are known.
std::vector<std::string> menuTitlesOf(const Application& application) {
  std::vector<std::string> titles;
  for (const Element& element : application.elements) {
    if (element.role != "AXMenuBarItem" || element.removed) continue;
    const std::string* title = textAttribute(element, "AXTitle");
    if (title != nullptr) titles.push_back(*title);
  }
  return titles;
}

/// The mark is the system's: only the user sees it, no picture of the window by itself has it.
std::string sharedAs(const World& world, WindowNumber window) {
  for (const Sharing& sharing : world.sharings) {
    if (sharing.window == window) return sharing.configuration.name;
  }
  return "";
}

}  // namespace

WindowPicture pictureOf(const World& world, const Window& window) {
  WindowPicture picture;
  picture.window = window;
  const Application* owner = findApplication(world, window.owner);
  if (owner == nullptr) return picture;
  picture.owner = owner->name.value_or("");
  picture.kind = owner->kind;
  picture.key = world.frontmost == owner->pid && hasFocus(*owner, window);
  const auto add = [&](const Element& element) {
    const bool isShown = element.window == window.number && isDrawn(element, window.frame) &&
                         isThere(*owner, &window, element) && !showsComposedText(*owner, element);
    if (!isShown || !isInSight(*owner, element)) return;
    picture.elements.push_back(asDrawn(element));
    if (const auto sight = sightOf(*owner, element)) picture.sights.emplace(element.id, *sight);
    if (isScrollBar(*owner, element.id)) picture.scrollBars.insert(element.id);
  };
  if (owner->rearranged) {
    for (const Element* element : drawingOrder(*owner)) add(*element);
  } else {
    for (const Element& element : owner->elements) add(element);
  }
  // An open menu lies over what comes later.
  std::stable_partition(picture.elements.begin(), picture.elements.end(),
                        [&](const Element& element) { return !isInOpenMenu(*owner, element); });
  picture.focused = owner->focusedElement;
  return picture;
}

Picture screenPicture(const World& world) {
  Picture picture;
  if (world.displays.empty()) return picture;
  picture.source = world.displays.front().frame;
  for (const Display& display : world.displays) {
    picture.displays.push_back(display.frame);
    picture.source = driver::unionOf(picture.source, display.frame);
  }
  const double scale = world.displays.front().scale;
  picture.width = pixels(picture.source.width, scale);
  picture.height = pixels(picture.source.height, scale);
  for (auto window = world.windows.rbegin(); window != world.windows.rend(); ++window) {
    if (!window->onScreen) continue;
    picture.windows.push_back(pictureOf(world, *window));
    picture.windows.back().sharedAs = sharedAs(world, window->number);
  }
  picture.marksSharing = !world.sharings.empty();
  picture.pointer = world.pointer;
  picture.covers = world.covers;
  picture.locked = world.session.locked.value_or(false);
  picture.userName = world.user.fullName;
  const Application* front = findApplication(world, world.frontmost);
  if (front != nullptr) {
    picture.menuBarTitle = front->name.value_or("");
    picture.menuTitles = menuTitlesOf(*front);
  }
  return picture;
}

std::unique_ptr<Canvas> draw(const Picture& picture) {
  if (!isDrawable(picture)) return nullptr;
  auto drawn = std::make_unique<Canvas>(picture.width, picture.height, picture.source);
  Canvas& canvas = *drawn;
  if (picture.backgroundGrey) {
    canvas.fillAll(Colour::grey(*picture.backgroundGrey));
  } else {
    drawDesktop(canvas, picture.displays);
  }
  for (const WindowPicture& window : picture.windows) {
    const auto look = lookOf(picture, window);
    if (look) drawWindow(canvas, *look);
    if (look && !look->sharedAs.empty()) drawSharingMark(canvas, *look);
  }
  if (!picture.backgroundGrey) drawMenuBar(canvas, picture);
  for (const Cover& cover : picture.covers) drawCover(canvas, cover);
  if (picture.locked) drawLockScreen(canvas, picture);
  if (!picture.backgroundGrey && picture.marksSharing) drawSharingIndicator(canvas, picture);
  if (picture.pointer) drawPointer(canvas, *picture.pointer);
  return drawn;
}

std::optional<std::string> drawPng(const Picture& picture) {
  const auto canvas = draw(picture);
  return canvas ? std::optional(encodedPng(canvas->pixels())) : std::nullopt;
}

}  // namespace simulator
