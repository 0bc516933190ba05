#include "tests/support/pasting.h"

#include "simulator/world/pasteboard.h"

namespace testing_support {

std::string pastingDeskWith(std::string_view lines) {
  return std::string(pastingDesk) + std::string(lines);
}

std::string clipboard(const TestMac& mac) {
  std::string text;
  const char* before = "";
  for (const auto& item : simulator::readableItems(mac.world().pasteboard)) {
    for (const auto& [type, data] : item) {
      text += before + type + "=" + data;
      before = " ";
    }
    before = ", ";
  }
  return text;
}

std::string refused(const std::string& message) {
  return "0 {\"error\":\"" + message + "\",\"ok\":false}\n";
}

std::string attachedFiles(const TestMac& mac, std::string_view application) {
  std::string titles;
  for (const auto& app : mac.world().applications) {
    if (app.name != application) continue;
    for (const auto& element : app.elements) {
      if (element.removed || element.role != "AXImage") continue;
      titles += (titles.empty() ? "" : " ") + std::string(simulator::labelOf(element));
    }
  }
  return titles;
}

}  // namespace testing_support
