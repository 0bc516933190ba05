#include "simulator/companion/import_page_source.h"

#include <array>
#include <pugixml.hpp>
#include <string_view>

#include "base/numbers.h"
#include "simulator/companion/failure.h"

namespace companion {

namespace {

struct ElementType {
  std::string_view name;  // behind XCUIElementType
  const char* role;
  const char* subrole = "";
};

/// The types of elements that have another role than their name says.
constexpr std::array elementTypes = {
    ElementType{"Any", "AXUnknown"},
    ElementType{"Other", "AXUnknown"},
    ElementType{"SecureTextField", "AXTextField", "AXSecureTextField"},
    ElementType{"SearchField", "AXTextField", "AXSearchField"},
    ElementType{"TextView", "AXTextArea"},
    ElementType{"ScrollView", "AXScrollArea"},
    ElementType{"WebView", "AXWebArea"},
    ElementType{"TableRow", "AXRow", "AXTableRow"},
    ElementType{"OutlineRow", "AXRow", "AXOutlineRow"},
    ElementType{"TableColumn", "AXColumn"},
    ElementType{"ToolbarButton", "AXButton", "AXToolbarButton"},
    ElementType{"Tab", "AXRadioButton", "AXTabButton"},
    ElementType{"Stepper", "AXIncrementor"},
    ElementType{"Toggle", "AXCheckBox", "AXToggle"},
    ElementType{"Switch", "AXCheckBox", "AXSwitch"},
    ElementType{"Dialog", "AXWindow", "AXDialog"},
    ElementType{"Alert", "AXWindow", "AXDialog"},
    ElementType{"TouchBar", "AXToolbar"},
    ElementType{"Icon", "AXImage"},
    ElementType{"DecrementArrow", "AXButton", "AXDecrementArrow"},
    ElementType{"IncrementArrow", "AXButton", "AXIncrementArrow"},
    ElementType{"RatingIndicator", "AXLevelIndicator", "AXRatingIndicator"},
};

constexpr std::string_view prefix = "XCUIElementType";

ElementType typeOf(std::string_view name) {
  for (const ElementType& each : elementTypes) {
    if (each.name == name) return each;
  }
  return {name, nullptr};
}

std::string textAt(const pugi::xml_node& node, const char* attribute) {
  return node.attribute(attribute).value();
}

std::optional<simulator::Rect> frameOf(const pugi::xml_node& node) {
  const auto x = driver::parseDouble(textAt(node, "x"));
  const auto y = driver::parseDouble(textAt(node, "y"));
  const auto width = driver::parseDouble(textAt(node, "width"));
  const auto height = driver::parseDouble(textAt(node, "height"));
  if (!x || !y || !width || !height) return std::nullopt;
  return simulator::Rect{*x, *y, *width, *height};
}

/// The role that XCUITest gives a type of elements: most have the name of theirs.
ImportedElement elementOf(const pugi::xml_node& node, std::size_t depth) {
  const std::string_view name = std::string_view(node.name()).substr(prefix.size());
  const ElementType type = typeOf(name);
  ImportedElement element;
  element.depth = depth;
  element.role = type.role == nullptr ? "AX" + std::string(name) : type.role;
  element.subrole = type.subrole;
  element.label = textAt(node, "title");
  element.description = textAt(node, "label");
  if (element.description == element.label) element.description.clear();
  if (element.label.empty()) element.label.swap(element.description);
  element.placeholder = textAt(node, "placeholderValue");
  element.identifier = textAt(node, "identifier");
  if (node.attribute("value")) element.value = textAt(node, "value");
  element.frame = frameOf(node);
  element.disabled = textAt(node, "enabled") == "false";
  element.selected = textAt(node, "selected") == "true";
  return element;
}

bool isElement(const pugi::xml_node& node) {
  return std::string_view(node.name()).substr(0, prefix.size()) == prefix;
}

/// What comes after the node in the text; whoever goes down steps one deeper.
pugi::xml_node following(pugi::xml_node node, const pugi::xml_node& top, std::size_t& depth) {
  if (node.first_child()) {
    ++depth;
    return node.first_child();
  }
  while (node != top && !node.next_sibling()) {
    node = node.parent();
    --depth;
  }
  return node == top ? pugi::xml_node() : node.next_sibling();
}

ImportedApplication applicationOf(const pugi::xml_node& node, std::int64_t pid) {
  ImportedApplication application;
  application.name = textAt(node, "title");
  if (application.name.empty()) application.name = textAt(node, "label");
  application.bundle = textAt(node, "bundleId");
  application.pid = pid;
  application.remarks = {
      "From a page source, which has no process ids and no numbers of windows (they are made up), "
      "no actions, and no application in front."};
  std::size_t depth = 0;
  for (auto each = following(node, node, depth); each; each = following(each, node, depth)) {
    if (!isElement(each)) continue;
    application.elements.push_back(elementOf(each, depth - 1));
  }
  return application;
}

}  // namespace

std::vector<ImportedApplication> importPageSource(const std::string& text,
                                                  const std::string& name) {
  constexpr std::int64_t firstPid = 500;
  pugi::xml_document document;
  const auto read = document.load_buffer(text.data(), text.size());
  if (!read) throw Failure(name + ": no whole XML: " + read.description());
  std::vector<ImportedApplication> applications;
  std::size_t depth = 0;
  for (auto each = document.first_child(); each; each = following(each, document, depth)) {
    if (std::string_view(each.name()) != "XCUIElementTypeApplication") continue;
    const auto count = static_cast<std::int64_t>(applications.size());
    applications.push_back(applicationOf(each, firstPid + count));
  }
  if (applications.empty()) throw Failure(name + ": no XCUIElementTypeApplication is in it");
  return applications;
}

}  // namespace companion
