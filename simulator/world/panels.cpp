#include "simulator/world/panels.h"

#include <algorithm>
#include <utility>

#include "simulator/world/elements.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace {

constexpr Size panelSize{480, 200};
constexpr const char* nameAtFirst = "Untitled";
constexpr std::int64_t nameLength = 8;

void addButton(Application& service, const Window& panel, const std::string& title, double x) {
  const double y = panel.frame.y + panelSize.height - 40;
  Element& button = addElement(service, panel.element, panel.number,
                               Rect{panel.frame.x + x, y, 80, 24}, "AXButton");
  button.attributes["AXTitle"] = title;
  button.actions = {"AXPress"};
  button.onClick = {{closeOwnWindow}};
}

/// The field for the file's name, which has the keyboard with all of the name selected.
void addNameField(Application& service, const Window& panel) {
  const Rect frame{panel.frame.x + 120, panel.frame.y + 40, 320, 24};
  Element& field = addElement(service, panel.element, panel.number, frame, "AXTextField");
  field.attributes["AXDescription"] = std::string("Save As:");
  field.attributes["AXValue"] = std::string(nameAtFirst);
  field.attributes["AXSelectedTextRange"] = ax::Range{0, nameLength};
  field.onSubmit = {{closeOwnWindow}};
  service.focusedElement = field.id;
}

void fill(Application& service, Window& panel, PanelKind kind) {
  Element& element = addElement(service, 0, panel.number, panel.frame, "AXWindow");
  element.attributes["AXTitle"] = *panel.title;
  element.attributes["AXSubrole"] = std::string("AXDialog");
  panel.element = service.focusedWindow = element.id;
  service.windows = {element.id};
  service.focusedElement = 0;
  if (kind == PanelKind::save) addNameField(service, panel);
  addButton(service, panel, "Cancel", 290);
  addButton(service, panel, *panel.title, 380);
}

/// The number of the line is that of the first panel.
WindowNumber nextNumber(World& world, const PanelService& service, const Application& application) {
  if (application.elements.empty()) return service.number;
  return ++world.lastWindow;
}

std::string show(const Reacting& with, PanelKind kind) {
  const PanelService* service = panelFor(with.world, with.application.pid);
  if (service == nullptr) return "finds no window for a panel";
  return showPanel(with.world, *service, kind) ? "" : "finds a panel there";
}

}  // namespace

const PanelService* panelFor(const World& world, Pid pid) {
  const auto found =
      std::find_if(world.panels.begin(), world.panels.end(), [&](const PanelService& service) {
        const Window* below = findWindow(world, service.over);
        return below != nullptr && below->owner == pid;
      });
  return found == world.panels.end() ? nullptr : &*found;
}

bool showPanel(World& world, const PanelService& service, PanelKind kind) {
  Application* application = findApplication(world, service.pid);
  const Window* below = findWindow(world, service.over);
  if (application == nullptr || below == nullptr || !application->windows.empty()) return false;
  Window panel;
  panel.number = nextNumber(world, service, *application);
  panel.owner = service.pid;
  panel.title = kind == PanelKind::save ? "Save" : "Open";
  panel.frame = {below->frame.x, below->frame.y, panelSize.width, panelSize.height};
  panel.layer = below->layer;
  fill(*application, panel, kind);
  world.windows.insert(world.windows.begin() + (below - world.windows.data()), std::move(panel));
  return true;
}

namespace reactions {

std::string openPanel(const Reacting& with) { return show(with, PanelKind::open); }

std::string savePanel(const Reacting& with) { return show(with, PanelKind::save); }

}  // namespace reactions

}  // namespace simulator
