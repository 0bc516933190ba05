#include "simulator/world/attributes.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>

#include "simulator/world/controls.h"
#include "simulator/world/elements.h"
#include "simulator/world/fields.h"
#include "simulator/world/roles.h"
#include "simulator/world/scrolling.h"
#include "simulator/world/sight.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace {

constexpr std::string_view manual = "AXManualAccessibility";
constexpr std::string_view enhanced = "AXEnhancedUserInterface";

// Every element has these, if only without a value.
constexpr std::string_view knownWithoutValue[] = {
    "AXTitle", "AXDescription", "AXHelp", "AXSubrole", "AXValue", "AXPlaceholderValue",
};

AttributeResult valueOf(AttributeValue value) { return {std::move(value), ax::Error::success}; }
AttributeResult errorOf(ax::Error error) { return {std::nullopt, error}; }

AttributeResult linkOf(ElementId id) {
  return id == 0 ? errorOf(ax::Error::noValue) : valueOf(ElementLink{id});
}

AttributeResult listOf(std::vector<ElementId> ids) {
  return ids.empty() ? errorOf(ax::Error::noValue) : valueOf(std::move(ids));
}

/// The nearest element at or above this one that is a window in the tree: a sheet counts when
/// `sheets` is set.
ElementId windowAround(const Application& application, const Element& element, bool sheets) {
  const Element* each = &element;
  while (each != nullptr && each->role != "AXWindow" && !(sheets && isWindowRole(each->role))) {
    each = findElement(application, each->parent);
  }
  return each == nullptr ? 0 : each->id;
}

bool isMenuBar(const Element& element) {
  return element.parent == 0 && !element.removed && element.role == "AXMenuBar";
}

ElementId menuBar(const Application& application) {
  const auto& elements = application.elements;
  const auto found = std::find_if(elements.begin(), elements.end(), isMenuBar);
  return found == elements.end() ? 0 : found->id;
}

std::vector<ElementId> topLevelOf(const Application& application) {
  std::vector<ElementId> children = application.windows;
  for (const Element& element : application.elements) {
    if (element.parent == 0 && element.window == 0 && !element.removed) {
      children.push_back(element.id);
    }
  }
  return children;
}

AttributeResult readOfApplication(const World& world, const Application& application,
                                  std::string_view name, Microseconds now) {
  if (name == "AXRole") return valueOf(std::string("AXApplication"));
  if (name == "AXTitle") {
    return application.name ? valueOf(*application.name) : errorOf(ax::Error::noValue);
  }
  if (name == "AXFrontmost") return valueOf(world.frontmost == application.pid);
  if (name == "AXHidden") return valueOf(application.hidden);
  if (name == manual) return valueOf(application.manualAccessibility);
  if (name == enhanced) return valueOf(application.enhancedUserInterface);
  const bool exists = hasTree(application, now);
  // A list of windows is a value even when it is empty.
  if (name == "AXWindows") {
    return valueOf(exists ? application.windows : std::vector<ElementId>());
  }
  if (name == "AXChildren") {
    return listOf(exists ? topLevelOf(application) : std::vector<ElementId>());
  }
  if (name == "AXFocusedWindow") return linkOf(exists ? application.focusedWindow : 0);
  if (name == "AXFocusedUIElement") return linkOf(exists ? application.focusedElement : 0);
  if (name == "AXMenuBar") return linkOf(exists ? menuBar(application) : 0);
  if (name == "AXMainWindow") {
    const Element* focused = findElement(application, application.focusedWindow);
    return linkOf(exists && focused ? windowAround(application, *focused, false) : 0);
  }
  return errorOf(ax::Error::attributeUnsupported);
}

/// The children of this role that are there; of those only what can be seen.
std::vector<ElementId> listed(const World& world, const Application& application,
                              const Element& element, std::string_view role, bool inSight) {
  std::vector<ElementId> ids = childrenOf(world, application, element);
  std::erase_if(ids, [&](ElementId id) {
    const Element* child = findElement(application, id);
    return child == nullptr || (!role.empty() && child->role != role) ||
           (inSight && !isInSight(application, *child));
  });
  return ids;
}

/// What scrolls tells which of its rows, or children, can be seen.
std::optional<AttributeResult> readOfScrolled(const World& world, const Application& application,
                                              const Element& element, std::string_view name) {
  if (scrolledWithin(application, &element) == 0) return std::nullopt;
  const bool hasRows = element.role == "AXTable" || element.role == "AXOutline";
  if (name == "AXRows" && hasRows) {
    return valueOf(listed(world, application, element, "AXRow", false));
  }
  if (name == "AXVisibleRows" && hasRows) {
    return valueOf(listed(world, application, element, "AXRow", true));
  }
  if (name == "AXVisibleChildren" && (hasRows || element.role == "AXList")) {
    return valueOf(listed(world, application, element, "", true));
  }
  return std::nullopt;
}

AttributeResult readOfElement(const World& world, const Application& application,
                              const Element& element, std::string_view name, Microseconds now) {
  if (name == "AXRole") return valueOf(element.role);
  if (name == "AXChildren") {
    return listOf(hasTree(application, now) ? childrenOf(world, application, element)
                                            : std::vector<ElementId>());
  }
  if (name == "AXPosition" && element.frame)
    return valueOf(Point{element.frame->x, element.frame->y});
  if (name == "AXSize" && element.frame) {
    return valueOf(Size{element.frame->width, element.frame->height});
  }
  if (name == "AXParent") return valueOf(ElementLink{element.parent});
  if (name == "AXWindow" && element.role != "AXWindow") {
    return linkOf(windowAround(application, element, false));
  }
  if (name == "AXTopLevelUIElement") return linkOf(windowAround(application, element, true));
  if (name == "AXFocused") {
    return valueOf(element.id == application.focusedElement ||
                   element.id == application.focusedWindow);
  }
  // Windows have no such attribute.
  if (name == "AXEnabled" && !isWindowRole(element.role)) return valueOf(true);
  const bool isState = name == "AXMinimized" || name == "AXModal";
  if (isState && element.role == "AXWindow") return valueOf(false);
  if (name == "AXExpanded" && element.role == "AXComboBox") {
    const ElementId list = menuOf(application, element);
    if (list != 0) return valueOf(application.openMenu == list);
  }
  if (const auto read = readOfScrolled(world, application, element, name)) return *read;
  const auto end = std::end(knownWithoutValue);
  return errorOf(std::find(std::begin(knownWithoutValue), end, name) == end
                     ? ax::Error::attributeUnsupported
                     : ax::Error::noValue);
}

/// What was written of the attribute in the world's text; none when nothing was.
std::optional<AttributeResult> readWritten(const std::map<std::string, AttributeValue>& attributes,
                                           const std::map<std::string, ax::Error>& failing,
                                           const std::string& name) {
  const auto failure = failing.find(name);
  if (failure != failing.end()) return errorOf(failure->second);
  const auto found = attributes.find(name);
  if (found != attributes.end()) return valueOf(found->second);
  return std::nullopt;
}

bool isNumber(const AttributeValue& value) {
  return std::holds_alternative<bool>(value) || std::holds_alternative<std::int64_t>(value) ||
         std::holds_alternative<double>(value);
}

ax::Error enable(Application& application, bool& attribute, const AttributeValue& value,
                 Microseconds now) {
  const bool* flag = std::get_if<bool>(&value);
  if (flag == nullptr) return ax::Error::illegalArgument;
  attribute = *flag;
  if (!application.manualAccessibility || !application.enhancedUserInterface) {
    application.enabledAt.reset();
  } else if (!application.enabledAt) {
    application.enabledAt = now;
  }
  // Chromium answers that it has no such attribute, and builds its tree all the same.
  return application.rejectsEnabling ? ax::Error::attributeUnsupported : ax::Error::success;
}

ax::Error writeFocus(Application& application, Element& element, const AttributeValue& value) {
  const bool* focused = std::get_if<bool>(&value);
  if (focused == nullptr) return ax::Error::illegalArgument;
  if (!isEnabled(element)) return ax::Error::attributeUnsupported;
  if (*focused) {
    focusField(application, element);
  } else if (application.focusedElement == element.id) {
    application.focusedElement = 0;
  }
  return ax::Error::success;
}

ax::Error writeHeld(std::map<std::string, AttributeValue>& attributes, const std::string& name,
                    const AttributeValue& value) {
  const auto held = attributes.find(name);
  if (held == attributes.end()) return ax::Error::attributeUnsupported;
  const bool fits =
      held->second.index() == value.index() || (isNumber(held->second) && isNumber(value));
  if (!fits) return ax::Error::illegalArgument;
  held->second = value;
  return ax::Error::success;
}

ax::Error writeSlider(Element& element, const AttributeValue& value) {
  const auto number = numberOf(value);
  if (!number || !std::isfinite(*number)) return ax::Error::illegalArgument;
  element.attributes["AXValue"] = withinLimits(element, *number);
  return ax::Error::success;
}

ax::Error writeToApplication(World& world, Application& application, const std::string& name,
                             const AttributeValue& value, Microseconds now) {
  if (name == manual) return enable(application, application.manualAccessibility, value, now);
  if (name == enhanced) return enable(application, application.enhancedUserInterface, value, now);
  const bool* flag = std::get_if<bool>(&value);
  if (name == "AXHidden" && flag != nullptr) {
    setHidden(world, application, *flag);
    return ax::Error::success;
  }
  return writeHeld(application.attributes, name, value);
}

ax::Error writeToElement(World& world, Application& application, Element& element,
                         const std::string& name, const AttributeValue& value, Microseconds now) {
  const auto& rejecting = habitsOf(application, element.id).rejecting;
  const auto rejected = rejecting.find(name);
  if (rejected != rejecting.end()) return rejected->second;
  if (isTextInput(element)) {
    const bool lies = element.attributes.count("AXFocused") > 0;
    if (name == "AXFocused" && !lies) return writeFocus(application, element, value);
    if (isFieldAttribute(element, name)) {
      return writeField(world, application, element, name, value, now);
    }
  }
  if (name == "AXValue" && !isEnabled(element)) return ax::Error::attributeUnsupported;
  if (name == "AXValue" && element.role == "AXSlider" && element.attributes.count(name) > 0) {
    return writeSlider(element, value);
  }
  if (name == "AXValue" && isScrollBar(application, element.id)) {
    const auto part = numberOf(value);
    if (!part || !std::isfinite(*part)) return ax::Error::illegalArgument;
    moveScrollBar(application, element.id, std::clamp(*part, 0.0, 1.0));
    return ax::Error::success;
  }
  if (name == "AXMinimized" && element.role == "AXWindow") {
    const auto flag = numberOf(value);
    if (!flag) return ax::Error::illegalArgument;
    setMinimized(world, application, element.window, *flag != 0);
    return ax::Error::success;
  }
  return writeHeld(element.attributes, name, value);
}

}  // namespace

bool hasTree(const Application& application, Microseconds now) {
  return !application.treeOnDemand ||
         (application.enabledAt && now >= *application.enabledAt + application.treeDelay);
}

AttributeResult readAttribute(const World& world, const Application& application, ElementId id,
                              const std::string& name, Microseconds now) {
  if (id == 0) {
    const auto written = readWritten(application.attributes, application.failing, name);
    return written ? *written : readOfApplication(world, application, name, now);
  }
  const Element* element = findElement(application, id);
  if (element == nullptr || !isThere(world, application, *element)) {
    return errorOf(ax::Error::invalidElement);
  }
  if (element->failing.count(name) == 0 && isTextInput(*element)) {
    if (const auto read = readField(application, *element, name)) return *read;
  }
  const auto written = readWritten(element->attributes, element->failing, name);
  return written ? *written : readOfElement(world, application, *element, name, now);
}

ax::Error writeAttribute(World& world, Application& application, ElementId id,
                         const std::string& name, const AttributeValue& value, Microseconds now) {
  if (id == 0) return writeToApplication(world, application, name, value, now);
  Element* element = findElement(application, id);
  if (element == nullptr || !isThere(world, application, *element)) {
    return ax::Error::invalidElement;
  }
  return writeToElement(world, application, *element, name, value, now);
}

}  // namespace simulator
