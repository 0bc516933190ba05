#include "simulator/companion/tree.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <set>

#include "simulator/companion/failure.h"
#include "simulator/mac/datum_text.h"
#include "simulator/mac/json_text.h"
#include "simulator/text/nearest.h"
#include "simulator/world/elements.h"
#include "simulator/world/roles.h"

namespace companion {

namespace {

using nlohmann::json;
using simulator::Application;
using simulator::Copies;
using simulator::Element;
using simulator::ElementId;
using simulator::Window;
using simulator::World;

json placeJson(const simulator::Rect& frame) {
  return {{"height", frame.height}, {"width", frame.width}, {"x", frame.x}, {"y", frame.y}};
}

/// A value of an attribute.
struct ValueJson {
  json operator()(const simulator::Opaque& value) const { return {{"hash", value.hash}}; }
  json operator()(const std::string& value) const { return simulator::textJson(value); }
  json operator()(bool value) const { return value; }
  json operator()(std::int64_t value) const { return value; }
  json operator()(double value) const { return value; }
  json operator()(simulator::ElementLink value) const { return {{"element", value.id}}; }
  json operator()(const std::vector<ElementId>& value) const { return {{"elements", value}}; }
  json operator()(simulator::Point value) const { return {{"x", value.x}, {"y", value.y}}; }
  json operator()(simulator::Size value) const {
    return {{"height", value.height}, {"width", value.width}};
  }
  json operator()(const simulator::Rect& value) const { return placeJson(value); }
  json operator()(const ax::Range& value) const {
    return {{"length", value.length}, {"location", value.location}};
  }
};

json attributesJson(const std::map<std::string, simulator::AttributeValue>& attributes) {
  json named = json::object();
  for (const auto& [name, value] : attributes) named[name] = std::visit(ValueJson{}, value);
  return named;
}

/// Attributes, by the error that a read of them gives.
json failingJson(const std::map<std::string, ax::Error>& failing) {
  json named = json::object();
  for (const auto& [name, error] : failing) named[name] = static_cast<std::int32_t>(error);
  return named;
}

/// An element in the order of a walk, or copies of one.
struct Node {
  ElementId id = 0;
  ElementId parent = 0;
  std::size_t depth = 0;
  const Copies* copies = nullptr;
};

const Copies* copiesWith(const Application& application, ElementId id) {
  const auto found = std::find_if(
      application.copies.begin(), application.copies.end(),
      [&](const Copies& each) { return id >= each.first && id < each.first + each.count; });
  return found == application.copies.end() ? nullptr : &*found;
}

/// Walks an application's elements, each once, however its children are linked.
class Walk {
 public:
  explicit Walk(const Application& application) : application_(application) {
    const auto& elements = application.elements;
    for (auto each = elements.rbegin(); each != elements.rend(); ++each) {
      if (each->parent == 0 && !each->removed) waiting_.push_back({each->id, 0, 0, nullptr});
    }
  }

  /// The nodes, parents first.
  std::vector<Node> nodes() {
    std::vector<Node> walked;
    while (!waiting_.empty()) {
      const Node node = waiting_.back();
      waiting_.pop_back();
      if (!seen_.insert(node.id).second) continue;
      walked.push_back(node);
      if (node.copies == nullptr) addChildren(node);
    }
    return walked;
  }

 private:
  void addChildren(const Node& node) {
    const Element* element = simulator::findElement(application_, node.id);
    for (auto id = element->children.rbegin(); id != element->children.rend(); ++id) {
      const Copies* copies = copiesWith(application_, *id);
      if (copies == nullptr && simulator::findElement(application_, *id) == nullptr) continue;
      // Copies are many, and alike: the first stands for all.
      const ElementId first = copies == nullptr ? *id : copies->first;
      if (!waiting_.empty() && waiting_.back().id == first) continue;
      waiting_.push_back({first, node.id, node.depth + 1, copies});
    }
  }

  const Application& application_;
  std::vector<Node> waiting_;
  std::set<ElementId> seen_;
};

json applicationJson(const World& world, const Application& application) {
  const auto* window = simulator::findElement(application, application.focusedWindow);
  return {{"answerDelay", static_cast<double>(application.answerDelay) / 1000},
          {"attributes", attributesJson(application.attributes)},
          {"bundleId", simulator::textJson(application.bundleIdentifier.value_or(""))},
          {"failing", failingJson(application.failing)},
          {"focusedElement", application.focusedElement},
          {"focusedWindow", window == nullptr ? 0 : window->window},
          {"front", world.frontmost == application.pid},
          {"hangs", application.hangs},
          {"hidden", application.hidden},
          {"kind", "application"},
          {"name", simulator::textJson(application.name.value_or(""))},
          {"pid", application.pid},
          {"running", application.running}};
}

json windowJson(const Window& window) {
  return {{"element", window.element},
          {"frame", placeJson(window.frame)},
          {"kind", "window"},
          {"layer", window.layer},
          {"onScreen", window.onScreen},
          {"pid", window.owner},
          {"sheetOf", window.sheetOf},
          {"title", window.title ? simulator::textJson(*window.title) : json()},
          {"window", window.number}};
}

json elementJson(const World& world, const Application& application, const Node& node) {
  const Element& element = *simulator::findElement(application, node.id);
  json line{{"actions", element.actions},
            {"attributes", attributesJson(element.attributes)},
            {"depth", node.depth},
            {"element", node.id},
            {"failing", failingJson(element.failing)},
            {"frame", element.frame ? placeJson(*element.frame) : json()},
            {"kind", "element"},
            {"label", simulator::textJson(simulator::labelOf(element))},
            {"parent", node.parent},
            {"pid", application.pid},
            {"role", element.role},
            {"there", simulator::isThere(world, application, element)},
            {"window", element.window}};
  if (node.copies != nullptr) line["copies"] = node.copies->count;
  return line;
}

/// The windows of the application, front to back.
std::vector<const Window*> windowsOf(const World& world, const Application& application) {
  std::vector<const Window*> windows;
  for (const Window& window : world.windows) {
    if (window.owner == application.pid) windows.push_back(&window);
  }
  return windows;
}

std::string wordsOf(const json& value) {
  return value.is_string() ? "\"" + value.get<std::string>() + "\"" : simulator::jsonLine(value);
}

std::string placeText(const json& frame) {
  if (frame.is_null()) return "";
  const auto number = [&](const char* key) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.15g", frame[key].get<double>());
    return std::string(text.data());
  };
  return " at " + number("x") + "," + number("y") + " size " + number("width") + "x" +
         number("height");
}

std::string applicationText(const json& line) {
  std::string text = wordsOf(line["name"]) + " pid " + simulator::jsonLine(line["pid"]);
  for (const char* what : {"front", "hidden", "hangs"}) {
    if (line[what].get<bool>()) text += std::string(", ") + what;
  }
  return line["running"].get<bool>() ? text : text + ", has quit";
}

std::string windowText(const json& line) {
  std::string text = "  window " + simulator::jsonLine(line["window"]) + " " +
                     wordsOf(line["title"]) + placeText(line["frame"]);
  if (line["sheetOf"] != 0) text += ", sheet of " + simulator::jsonLine(line["sheetOf"]);
  return line["onScreen"].get<bool>() ? text : text + ", not on screen";
}

std::string elementText(const json& line) {
  std::string text(4 + 2 * line["depth"].get<std::size_t>(), ' ');
  text += line["role"].get<std::string>() + " " + wordsOf(line["label"]) + placeText(line["frame"]);
  const json& attributes = line["attributes"];
  if (attributes.contains("AXValue")) text += " value " + wordsOf(attributes["AXValue"]);
  for (const json& action : line["actions"]) text += " " + action.get<std::string>();
  if (line.contains("copies")) text += " (" + simulator::jsonLine(line["copies"]) + " of them)";
  return line["there"].get<bool>() ? text : text + ", not there";
}

/// Everything about an application, a value for each line.
std::vector<json> treeOf(const World& world, const Application& application) {
  std::vector<json> lines{applicationJson(world, application)};
  for (const Window* window : windowsOf(world, application)) lines.push_back(windowJson(*window));
  for (const Node& node : Walk(application).nodes()) {
    lines.push_back(elementJson(world, application, node));
  }
  return lines;
}

constexpr std::size_t choicesMax = 5;

/// For who has to choose: "AXButton at 10,20 size 60x24".
std::string choiceText(const Element& element) {
  return element.role + (element.frame ? placeText(placeJson(*element.frame)) : "");
}

[[noreturn]] void failUnlabelled(const Application& application, const std::string& label) {
  std::vector<std::string> labels;
  for (const Element& each : application.elements) {
    if (!each.removed) labels.push_back(simulator::labelOf(each));
  }
  throw Failure("no element is labelled \"" + label + "\"" +
                simulator::suggestion(simulator::nearest(label, labels)));
}

/// The one element with this label.
const Element* labelled(const Application& application, const std::string& label) {
  std::vector<const Element*> found;
  const auto add = [&](bool windows) {
    for (const Element& each : application.elements) {
      const bool isMeant = !each.removed && simulator::isWindowRole(each.role) == windows &&
                           simulator::labelOf(each) == label;
      if (isMeant) found.push_back(&each);
    }
  };
  add(false);
  if (found.empty()) add(true);
  if (found.empty()) failUnlabelled(application, label);
  if (found.size() == 1) return found.front();
  std::string choices;
  for (std::size_t i = 0; i < std::min(found.size(), choicesMax); ++i) {
    choices += (i == 0 ? "" : ", ") + choiceText(*found[i]);
  }
  throw Failure(std::to_string(found.size()) + " elements are labelled \"" + label +
                "\": " + choices + (found.size() > choicesMax ? ", …" : "") +
                "; \"simulated-mac tree\" shows their values");
}

}  // namespace

std::vector<std::string> treeLines(const World& world, const Application& application) {
  std::vector<std::string> lines;
  for (const json& line : treeOf(world, application)) lines.push_back(simulator::jsonLine(line));
  return lines;
}

std::vector<std::string> treeText(const World& world, const Application& application) {
  std::vector<std::string> lines;
  for (const json& line : treeOf(world, application)) {
    const std::string kind = line["kind"];
    const auto text = kind == "application" ? applicationText
                      : kind == "window"    ? windowText
                                            : elementText;
    lines.push_back(simulator::printable(text(line)));
  }
  return lines;
}

std::string valueLine(const Application& application, const std::string& label) {
  const Element* found = labelled(application, label);
  const auto value = found->attributes.find("AXValue");
  return simulator::jsonLine(
      {{"element", found->id},
       {"ok", true},
       {"role", found->role},
       {"value",
        value == found->attributes.end() ? json() : std::visit(ValueJson{}, value->second)},
       {"window", found->window}});
}

const Application& applicationCalled(const World& world, const std::string& name) {
  const auto& applications = world.applications;
  const auto found =
      std::find_if(applications.begin(), applications.end(), [&](const Application& each) {
        return each.name == name || "pid:" + std::to_string(each.pid) == name;
      });
  if (found != applications.end()) return *found;
  std::vector<std::string> names;
  for (const Application& each : applications) names.push_back(each.name.value_or(""));
  throw Failure("there is no application \"" + name + "\"" +
                simulator::suggestion(simulator::nearest(name, names)));
}

}  // namespace companion
