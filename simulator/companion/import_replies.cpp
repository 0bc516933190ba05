#include "simulator/companion/import_replies.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>

#include "simulator/companion/failure.h"

namespace companion {

namespace {

using nlohmann::json;

/// As many as a dump shows at most.
constexpr std::size_t dumpedMax = 4000;

simulator::Rect rectOf(const json& frame) {
  return {frame.at("x"), frame.at("y"), frame.at("width"), frame.at("height")};
}

ImportedApplication applicationOf(const json& reply) {
  ImportedApplication application;
  application.name = reply.at("name");
  application.bundle = reply.at("bundleId");
  application.pid = reply.at("pid");
  application.active = reply.at("active");
  for (const json& each : reply.at("windows")) {
    application.windows.push_back(
        {each.at("id"), each.at("layer"), each.at("title"), rectOf(each)});
  }
  return application;
}

ImportedElement elementOf(const json& entry) {
  ImportedElement element;
  element.depth = entry.at("depth");
  element.role = entry.at("role");
  element.label = entry.at("label");
  element.subrole = entry.value("subrole", "");
  if (entry.contains("value")) element.value = entry.at("value");
  if (entry.contains("frame")) element.frame = rectOf(entry.at("frame"));
  return element;
}

/// Numbers of windows stand in their list alone: a window is known by its frame and title there.
void numberWindows(ImportedApplication& application) {
  std::vector<bool> taken(application.windows.size());
  for (ImportedElement& element : application.elements) {
    if (element.depth > 0 || element.role != "AXWindow") continue;
    for (std::size_t i = 0; i < application.windows.size() && !element.window; ++i) {
      const ImportedWindow& window = application.windows[i];
      if (taken[i] || window.frame != element.frame || window.title != element.label) continue;
      taken[i] = true;
      element.window = window.number;
      element.layer = window.layer;
    }
  }
}

/// False for a reply of another kind.
bool take(const json& reply, std::vector<ImportedApplication>& applications) {
  if (reply.contains("windows")) {
    applications.push_back(applicationOf(reply));
    return true;
  }
  if (applications.empty()) return false;
  ImportedApplication& application = applications.back();
  if (reply.contains("menus")) {
    for (const json& title : reply.at("menus")) application.menus.push_back(title);
    return true;
  }
  if (!reply.contains("elements")) return false;
  std::vector<ImportedElement> elements;
  for (const json& entry : reply.at("elements")) elements.push_back(elementOf(entry));
  // A dump begins with the application's last window.
  for (auto end = elements.end(); end != elements.begin();) {
    const auto isOutermost = [](const ImportedElement& each) { return each.depth == 0; };
    const auto last = std::find_if(std::make_reverse_iterator(end), elements.rend(), isOutermost);
    const auto begin = last == elements.rend() ? elements.begin() : last.base() - 1;
    application.elements.insert(application.elements.end(), begin, end);
    end = begin;
  }
  if (application.elements.size() >= dumpedMax) {
    application.remarks.emplace_back("The dump ends at 4,000 elements: the rest is missing.");
  }
  return true;
}

}  // namespace

std::vector<ImportedApplication> importReplies(const std::string& text, const std::string& name) {
  std::vector<ImportedApplication> applications;
  std::istringstream lines(text);
  std::size_t number = 0;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    if (line.find_first_not_of(" \t\r") == line.npos) continue;
    const std::string place = name + ", line " + std::to_string(number) + ": ";
    try {
      const json reply = json::parse(line);
      if (!reply.value("ok", false)) throw Failure(place + "the command has failed");
      if (take(reply, applications)) continue;
    } catch (const json::exception&) {
      throw Failure(place + "no whole reply of windows, ax-dump or ax-menubar");
    }
    throw Failure(place + "no reply of windows, or of ax-dump or ax-menubar behind one of windows");
  }
  for (ImportedApplication& application : applications) {
    application.remarks.insert(
        application.remarks.begin(),
        "From replies of driver, which tell neither actions nor what is disabled, nor of a label "
        "which attribute it is, nor what stands in menus.");
    numberWindows(application);
  }
  return applications;
}

}  // namespace companion
