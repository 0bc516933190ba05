#include "simulator/world/world.h"

#include <algorithm>

#include "simulator/world/roles.h"

namespace simulator {

namespace {

template <class Applications>
auto* applicationIn(Applications& applications, Pid pid) {
  const auto found =
      std::find_if(applications.begin(), applications.end(),
                   [&](const Application& each) { return each.running && each.pid == pid; });
  return found == applications.end() ? nullptr : &*found;
}

template <class Windows>
auto* windowIn(Windows& windows, WindowNumber number) {
  const auto found = std::find_if(windows.begin(), windows.end(),
                                  [&](const Window& each) { return each.number == number; });
  return found == windows.end() ? nullptr : &*found;
}

/// The id of what a copy is a copy of; any other id is its own.
ElementId originalOf(const Application& application, ElementId id) {
  if (id < firstCopy) return id;
  for (const Copies& copies : application.copies) {
    if (id >= copies.first && id < copies.first + copies.count) return copies.original;
  }
  return id;
}

template <class ApplicationType>
auto* elementIn(ApplicationType& application, ElementId given) {
  auto& elements = application.elements;
  const ElementId id = originalOf(application, given);
  const bool exists = id >= 1 && static_cast<std::size_t>(id) <= elements.size() &&
                      !elements[static_cast<std::size_t>(id) - 1].removed;
  return exists ? &elements[static_cast<std::size_t>(id) - 1] : nullptr;
}

template <class ApplicationType>
auto* labelledIn(ApplicationType& application, const std::string& label) {
  auto& elements = application.elements;
  const auto found = std::find_if(elements.begin(), elements.end(), [&](const Element& each) {
    return !each.removed && !isWindowRole(each.role) && labelOf(each) == label;
  });
  return found == elements.end() ? nullptr : &*found;
}

}  // namespace

Application* findApplication(World& world, Pid pid) {
  return applicationIn(world.applications, pid);
}

const Application* findApplication(const World& world, Pid pid) {
  return applicationIn(world.applications, pid);
}

Window* findWindow(World& world, WindowNumber number) { return windowIn(world.windows, number); }

const Window* findWindow(const World& world, WindowNumber number) {
  return windowIn(world.windows, number);
}

Element* findElement(Application& application, ElementId id) { return elementIn(application, id); }

const Element* findElement(const Application& application, ElementId id) {
  return elementIn(application, id);
}

const std::string& labelAttributeOf(const Element& element) {
  static const std::string names[] = {"AXTitle", "AXDescription", "AXPlaceholderValue", "AXHelp"};
  for (const std::string& name : names) {
    const auto found = element.attributes.find(name);
    if (found == element.attributes.end()) continue;
    const auto* text = std::get_if<std::string>(&found->second);
    if (text != nullptr && !text->empty()) return name;
  }
  return names[0];
}

const std::string& labelOf(const Element& element) {
  static const std::string none;
  const auto found = element.attributes.find(labelAttributeOf(element));
  if (found == element.attributes.end()) return none;
  const auto* text = std::get_if<std::string>(&found->second);
  return text == nullptr ? none : *text;
}

Element* findLabelled(Application& application, const std::string& label) {
  return labelledIn(application, label);
}

const Element* findLabelled(const Application& application, const std::string& label) {
  return labelledIn(application, label);
}

Window* findTitled(World& world, Pid owner, const std::string& title) {
  const auto found =
      std::find_if(world.windows.begin(), world.windows.end(),
                   [&](const Window& each) { return each.owner == owner && each.title == title; });
  return found == world.windows.end() ? nullptr : &*found;
}

}  // namespace simulator
