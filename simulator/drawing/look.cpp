#include "simulator/drawing/look.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "simulator/world/element_text.h"
#include "simulator/world/elements.h"
#include "simulator/world/roles.h"

namespace simulator {

namespace {

constexpr std::size_t mostBytes = 4000;  // of a text, more than a screen shows
// A world may give any number for a frame and megabytes of text: a picture is never worth more.
constexpr double margin = 4096;  // points that a frame may reach beyond what it is in
constexpr double shadow = 48;    // points around a window that its shadow may darken

struct RoleControl {
  std::string_view role;
  Control control;
};

constexpr RoleControl controls[] = {
    {"AXButton", Control::button},
    {"AXStaticText", Control::staticText},
    {"AXTextField", Control::textField},
    {"AXTextArea", Control::textArea},
    {"AXCheckBox", Control::checkBox},
    {"AXRadioButton", Control::radioButton},
    {"AXSwitch", Control::switchButton},
    {"AXPopUpButton", Control::popUpButton},
    {"AXMenuButton", Control::popUpButton},
    {"AXComboBox", Control::textField},
    {"AXSearchField", Control::searchField},
    {"AXLink", Control::link},
    {"AXHeading", Control::heading},
    {"AXRow", Control::row},
    {"AXCell", Control::row},
    {"AXMenuItem", Control::menuItem},
    {"AXList", Control::list},
    {"AXTable", Control::list},
    {"AXOutline", Control::list},
    {"AXMenu", Control::menu},
    {"AXPopover", Control::popover},
    {"AXWebArea", Control::page},
    {"AXSlider", Control::slider},
    {"AXProgressIndicator", Control::progress},
    {"AXImage", Control::image},
    {"AXTab", Control::tab},
    {"AXDisclosureTriangle", Control::disclosure},
};

Control controlOf(const std::string& role) {
  for (const RoleControl& each : controls) {
    if (each.role == role) return each.control;
  }
  return Control::box;
}

bool highlights(Control control) {
  switch (control) {
    case Control::box:
    case Control::staticText:
    case Control::heading:
    case Control::list:
    case Control::page:
    case Control::progress:
    case Control::image:
    case Control::menu:
    case Control::popover:
    case Control::scrollBar:
      return false;
    default:
      return true;
  }
}

/// The frame with edges that are not far outside; cairo's numbers are small.
std::optional<Rect> clamped(const Rect& frame, const Rect& within) {
  if (!driver::isFinite(frame) || !(frame.width > 0 && frame.height > 0)) return std::nullopt;
  const Rect limits{within.x - margin, within.y - margin, within.width + 2 * margin,
                    within.height + 2 * margin};
  return driver::intersection(frame, limits);
}

/// What of an element's attributes is drawn, collected in one pass.
struct Drawn {
  std::string_view labels[4];  // title, description, placeholder, help
  std::string_view text;
  std::optional<double> value;
  double least = 0;
  double most = 1;
  bool enabled = true;
  bool selected = false;
  ax::Range selection;
};

void collectNumber(Drawn& drawn, std::string_view name, double number) {
  if (name == "AXValue") drawn.value = number;
  if (name == "AXMinValue") drawn.least = number;
  if (name == "AXMaxValue") drawn.most = number;
  if (name == "AXEnabled") drawn.enabled = number != 0;
  if (name == "AXSelected") drawn.selected = number != 0;
}

void collectText(Drawn& drawn, std::string_view name, std::string_view text) {
  if (name == "AXTitle") drawn.labels[0] = text;
  if (name == "AXDescription") drawn.labels[1] = text;
  if (name == "AXPlaceholderValue") drawn.labels[2] = text;
  if (name == "AXHelp") drawn.labels[3] = text;
  if (name == "AXValue") drawn.text = text;
}

Drawn collect(const Element& element) {
  Drawn drawn;
  for (const auto& [name, value] : element.attributes) {
    if (const auto* text = std::get_if<std::string>(&value)) {
      collectText(drawn, name, *text);
    } else if (const auto number = numberOf(value)) {
      collectNumber(drawn, name, *number);
    } else if (const auto* range = std::get_if<ax::Range>(&value)) {
      if (name == "AXSelectedTextRange") drawn.selection = *range;
    }
  }
  return drawn;
}

std::string_view firstText(const Drawn& drawn) {
  for (const std::string_view label : drawn.labels) {
    if (!label.empty()) return label.substr(0, mostBytes);
  }
  return {};
}

bool holdsText(Control control) {
  return control == Control::textField || control == Control::searchField ||
         control == Control::textArea;
}

double levelOf(Control control, const Drawn& drawn) {
  const double value = drawn.value.value_or(0);
  const bool isPart =
      control == Control::slider || control == Control::progress || control == Control::scrollBar;
  if (!isPart) return value == 0 ? 0 : 1;
  const double level = (value - drawn.least) / (drawn.most - drawn.least);
  return std::isfinite(level) ? std::clamp(level, 0.0, 1.0) : 0;
}

ElementLook elementLook(const WindowPicture& picture, const Element& element, const Rect& frame,
                        ElementId hovered) {
  const Drawn drawn = collect(element);
  ElementLook look;
  look.control =
      picture.scrollBars.contains(element.id) ? Control::scrollBar : controlOf(element.role);
  look.frame = frame;
  const auto sight = picture.sights.find(element.id);
  if (sight != picture.sights.end()) look.sight = sight->second;
  look.enabled = drawn.enabled;
  look.focused = element.id == picture.focused;
  look.hovered = element.id == hovered && drawn.enabled && highlights(look.control);
  look.selected = drawn.selected;
  look.level = levelOf(look.control, drawn);
  look.text = drawn.text;
  if (look.text.size() > mostBytes) {
    // Where the caret is, or where one begins to read.
    look.text = look.focused ? look.text.substr(look.text.size() - mostBytes)
                             : look.text.substr(0, mostBytes);
  }
  look.label = holdsText(look.control) ? drawn.labels[2].substr(0, mostBytes) : firstText(drawn);
  if (look.focused && holdsText(look.control)) {
    const std::int64_t cut =
        drawn.text.size() > look.text.size() ? utf16Length(drawn.text) - utf16Length(look.text) : 0;
    const std::int64_t length = utf16Length(look.text);
    look.selection.location = std::clamp(std::max<std::int64_t>(drawn.selection.location, 0) - cut,
                                         std::int64_t{0}, length);
    look.selection.length =
        std::clamp(drawn.selection.length, std::int64_t{0}, length - look.selection.location);
  }
  return look;
}

/// It holds the parts of a row, and shows nothing of its own over them.
bool holdsParts(std::string_view role) {
  return role == "AXGroup" || role == "AXCell" || role == "AXRow";
}

/// The rows and cells whose texts are elements of their own. Such a row shows these, as a real list
/// does, and its label is for accessibility alone.
std::set<ElementId> rowsWithTexts(const WindowPicture& picture) {
  std::set<ElementId> rows;
  std::map<ElementId, const Element*> holders;
  for (const Element& each : picture.elements) {
    if (holdsParts(each.role)) holders.emplace(each.id, &each);
  }
  for (const Element& each : picture.elements) {
    if (each.role != "AXStaticText" || textOf(each).empty()) continue;
    for (auto holder = holders.find(each.parent); holder != holders.end();
         holder = holders.find(holder->second->parent)) {
      if (!rows.insert(holder->first).second) break;
    }
  }
  return rows;
}

ElementId hoveredElement(const WindowPicture& picture) {
  if (!picture.window.hover) return 0;
  const auto found =
      std::find_if(picture.elements.rbegin(), picture.elements.rend(), [&](const Element& each) {
        const Point hover = *picture.window.hover;
        const auto sight = picture.sights.find(each.id);
        return each.frame && driver::contains(*each.frame, hover) &&
               (sight == picture.sights.end() || driver::contains(sight->second, hover));
      });
  return found == picture.elements.rend() ? 0 : found->id;
}

double finiteOrNone(double value) { return std::isfinite(value) ? value : 0; }

}  // namespace

bool isDrawn(const Element& element, const Rect& window) {
  return element.frame && !element.removed && !isWindowRole(element.role) &&
         clamped(*element.frame, window) && driver::intersection(*element.frame, window);
}

std::optional<WindowLook> lookOf(const Picture& picture, const WindowPicture& picturedWindow) {
  const Window& window = picturedWindow.window;
  const Rect& source = picture.source;
  const auto frame = clamped(window.frame, source);
  const Rect reach{source.x - shadow, source.y - shadow, source.width + 2 * shadow,
                   source.height + 2 * shadow};
  if (!frame || !driver::intersection(*frame, reach)) return std::nullopt;
  WindowLook look;
  look.frame = *frame;
  look.sheet = window.sheetOf != 0;
  look.titleBar = !look.sheet && (window.title.has_value() || window.layer == 0);
  if (look.titleBar && window.title) {
    look.title = std::string_view(*window.title).substr(0, mostBytes);
  }
  look.key = picturedWindow.key;
  look.kind = picturedWindow.kind;
  look.scrolledLines = {finiteOrNone(window.scrolledLines.x), finiteOrNone(window.scrolledLines.y)};
  look.sharedAs = std::string_view(picturedWindow.sharedAs).substr(0, mostBytes);
  const ElementId hovered = hoveredElement(picturedWindow);
  const std::set<ElementId> withTexts = rowsWithTexts(picturedWindow);
  look.elements.reserve(picturedWindow.elements.size());
  for (const Element& element : picturedWindow.elements) {
    if (!isDrawn(element, look.frame)) continue;
    const auto elementFrame = clamped(*element.frame, look.frame);
    look.elements.push_back(elementLook(picturedWindow, element, *elementFrame, hovered));
    ElementLook& added = look.elements.back();
    if (added.control == Control::row && withTexts.contains(element.id)) {
      added.label = {};
      added.text = {};
    }
  }
  return look;
}

}  // namespace simulator
