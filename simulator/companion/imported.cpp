#include "simulator/companion/imported.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <set>

#include "base/numbers.h"
#include "simulator/world/roles.h"

namespace companion {

namespace {

/// The code for an attribute that has no value.
constexpr const char* noValue = "-25212";

/// As a world's text has it.
std::string inQuotes(std::string_view text) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string quoted = "\"";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    constexpr unsigned char firstPrintable = 0x20;
    if (c == '"' || c == '\\') {
      quoted += {'\\', c};
    } else if (c == '\n') {
      quoted += "\\n";
    } else if (c == '\t') {
      quoted += "\\t";
    } else if (byte < firstPrintable) {
      quoted += {'\\', 'x', digits[byte >> 4U], digits[byte & 0xFU]};
    } else {
      quoted += c;
    }
  }
  return quoted + '"';
}

std::string shortest(double number) {
  std::array<char, 32> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  return {digits.data(), end};
}

std::string frameText(const simulator::Rect& frame) {
  return " at " + shortest(frame.x) + "," + shortest(frame.y) + " size " + shortest(frame.width) +
         "x" + shortest(frame.height);
}

/// Texts are those of what takes text or shows it; of other elements a number is one.
std::string valueText(const ImportedElement& element) {
  const bool isText = simulator::takesText(element.role) || element.role == "AXStaticText";
  const auto number = driver::parseDouble(*element.value);
  const bool isNumber = !isText && number && shortest(*number) == *element.value;
  return " value " + (isNumber ? *element.value : inQuotes(*element.value));
}

/// It can stand in a line as it is, as most roles can.
bool isBareName(std::string_view role) {
  return role.substr(0, 2) == "AX" && std::all_of(role.begin(), role.end(), [](char c) {
           return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
         });
}

class WorldWriter {
 public:
  explicit WorldWriter(const std::vector<ImportedApplication>& applications) {
    for (const ImportedApplication& each : applications) {
      for (const ImportedWindow& window : each.windows) numbers_.insert(window.number);
    }
  }

  std::string write(const std::vector<ImportedApplication>& applications) {
    bool hasFront = false;
    for (const ImportedApplication& each : applications) {
      writeApplication(each, each.active && !hasFront);
      hasFront = hasFront || each.active;
    }
    return std::move(text_);
  }

 private:
  void writeApplication(const ImportedApplication& application, bool isFront) {
    for (const std::string& remark : application.remarks) text_ += "# " + remark + "\n";
    text_ += "app " + inQuotes(application.name) + " pid " + std::to_string(application.pid);
    text_ += application.bundle.empty() ? " unbundled" : " bundle " + inQuotes(application.bundle);
    if (isFront) text_ += " frontmost";
    text_ += "\n";
    for (const std::string& title : application.menus) {
      if (!title.empty()) text_ += "  menu " + inQuotes(title) + "\n";
    }
    hasOpenMenu_ = false;
    std::vector<std::string> roles;  // of what the element is in
    for (const ImportedElement& element : application.elements) {
      roles.resize(std::min(element.depth, roles.size()));
      writeElement(element, roles.empty() ? "" : roles.back());
      roles.push_back(element.role);
    }
    writeOtherWindows(application);
  }

  /// A world's windows have numbers.
  std::int64_t numberOf(const ImportedElement& element) {
    if (element.window) return *element.window;
    while (numbers_.contains(nextNumber_)) ++nextNumber_;
    return nextNumber_++;
  }

  void writeElement(const ImportedElement& element, const std::string& around) {
    const std::string indentation(element.depth + 2, ' ');
    if (element.depth == 0 && element.role == "AXWindow") {
      writeWindow(element);
      return;
    }
    text_ += indentation + (isBareName(element.role) ? element.role : "AXUnknown");
    if (!element.label.empty()) text_ += " " + inQuotes(element.label);
    if (element.frame) text_ += frameText(*element.frame);
    if (element.value) {
      text_ += valueText(element);
    } else if (simulator::takesText(element.role) || simulator::isSwitchRole(element.role)) {
      text_ += std::string(" failing AXValue ") + noValue;
    }
    writeAttributes(element);
    const bool opens = around == "AXPopUpButton" || around == "AXMenuButton";
    if (element.role == "AXMenu" && opens && !hasOpenMenu_) {
      text_ += " open";
      hasOpenMenu_ = true;
    }
    text_ += "\n";
  }

  void writeAttributes(const ImportedElement& element) {
    const bool isText = simulator::takesText(element.role) || element.role == "AXStaticText";
    if (!element.description.empty()) {
      text_ += isText ? " attribute AXTitle " : " description ";
      text_ += inQuotes(element.description);
    }
    if (!element.placeholder.empty()) text_ += " placeholder " + inQuotes(element.placeholder);
    if (!isBareName(element.role)) text_ += " attribute AXRole " + inQuotes(element.role);
    if (!element.subrole.empty()) text_ += " attribute AXSubrole " + inQuotes(element.subrole);
    if (element.disabled) text_ += " disabled";
    if (element.selected) text_ += " attribute AXSelected true";
    if (!element.identifier.empty()) {
      text_ += " attribute AXIdentifier " + inQuotes(element.identifier);
    }
  }

  void writeWindow(const ImportedElement& element) {
    if (!element.window) text_ += "  # The number of this window is made up.\n";
    text_ += "  window " + std::to_string(numberOf(element));
    if (!element.label.empty()) text_ += " " + inQuotes(element.label);
    text_ += frameText(element.frame.value_or(simulator::Rect{0, 0, 1, 1}));
    if (!element.frame) {
      text_ += std::string(" failing AXPosition ") + noValue + " failing AXSize " + noValue;
    }
    text_ += element.subrole.empty() ? std::string(" failing AXSubrole ") + noValue
                                     : " attribute AXSubrole " + inQuotes(element.subrole);
    if (element.layer != 0) text_ += " layer " + std::to_string(element.layer);
    if (!element.identifier.empty()) {
      text_ += " attribute AXIdentifier " + inQuotes(element.identifier);
    }
    text_ += "\n";
  }

  /// Those that accessibility does not know.
  void writeOtherWindows(const ImportedApplication& application) {
    for (const ImportedWindow& window : application.windows) {
      const bool isWritten =
          std::any_of(application.elements.begin(), application.elements.end(),
                      [&](const ImportedElement& each) { return each.window == window.number; });
      if (isWritten) continue;
      text_ += "  window " + std::to_string(window.number);
      if (!window.title.empty()) text_ += " " + inQuotes(window.title);
      text_ += frameText(window.frame) + " no-element";
      if (window.layer != 0) text_ += " layer " + std::to_string(window.layer);
      text_ += "\n";
    }
  }

  std::string text_;
  std::set<std::int64_t> numbers_;
  std::int64_t nextNumber_ = 1000;
  bool hasOpenMenu_ = false;
};

}  // namespace

std::string worldText(const std::vector<ImportedApplication>& applications) {
  return WorldWriter(applications).write(applications);
}

}  // namespace companion
