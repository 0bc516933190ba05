#include "tests/costs/footprint/tree.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/ax.h"
#include "platform/text.h"
#include "tests/costs/footprint/allocations.h"

namespace footprint {

namespace {

constexpr std::size_t chainLength = 50;
constexpr std::size_t branches = 8;
constexpr std::size_t stepLength = 10'000;
constexpr std::size_t controlDepth = 60;
constexpr platform::Pid applicationPid = 41;

struct Node {
  const char* role = "AXGroup";
  std::vector<std::size_t> children;
};

struct Tree {
  std::vector<Node> nodes;  // the window first
  char application = 0;     // its address is the application's
  std::size_t messages = 0;
};

Tree& tree() {
  static Tree only;
  return only;
}

std::size_t parentOf(std::size_t node, Shape shape) {
  switch (shape) {
    case Shape::wide:
      return 0;
    case Shape::deep:
      return node % chainLength == 1 ? 0 : node - 1;
    case Shape::bushy:
      return (node - 1) / branches;
    case Shape::fringe:
      return std::min(node - 1, controlDepth);
    case Shape::stairs:
      return (node - 1) / stepLength * stepLength;
  }
  return 0;
}

/// A handle that owns nothing.
ax::Element elementAt(void* address) {
  return ax::Element(std::shared_ptr<void>(std::shared_ptr<void>(), address));
}

ax::Value listOf(const std::vector<std::size_t>& nodes) {
  std::vector<ax::Value> elements;
  elements.reserve(nodes.size());
  for (const std::size_t node : nodes) elements.push_back({elementAt(&tree().nodes[node])});
  return {std::move(elements)};
}

ax::Slot slotOf(const ax::Element& element, std::string_view name) {
  ax::Slot unsupported = {std::nullopt, ax::Error::attributeUnsupported};
  if (element.get() == &tree().application) {
    return name == "AXWindows" ? ax::Slot{listOf({0})} : unsupported;
  }
  const Node& node = *static_cast<const Node*>(element.get());
  const std::string_view role = node.role;
  if (name == "AXRole") return {ax::Value{std::string(role)}};
  if (name == "AXChildren") return {listOf(node.children)};
  if (name == "AXTitle" && role == "AXButton") return {ax::Value{std::string(24, 'b')}};
  if (name == "AXValue" && role == "AXStaticText") return {ax::Value{std::string(24, 't')}};
  if (name == "AXPosition") return {ax::Value{platform::Point{5, 5}}};
  if (name == "AXSize") return {ax::Value{platform::Size{20, 10}}};
  return unsupported;
}

std::size_t count() { return ++tree().messages; }

}  // namespace

void setTree(Shape shape, std::size_t elements) {
  const Uncounted uncounted;
  tree().messages = 0;
  tree().nodes.assign(elements, {});
  constexpr const char* roles[] = {"AXGroup", "AXButton", "AXGroup", "AXStaticText"};
  tree().nodes[0].role = "AXWindow";
  for (std::size_t node = 1; node < elements; ++node) {
    tree().nodes[node].role = roles[node % std::size(roles)];
    tree().nodes[parentOf(node, shape)].children.push_back(node);
  }
}

std::size_t messageCount() { return tree().messages; }

}  // namespace footprint

namespace ax {

using footprint::count;
using footprint::Uncounted;

Element application(platform::Pid /*pid*/) {
  return footprint::elementAt(&footprint::tree().application);
}

platform::Pid pid(const Element& /*element*/) { return footprint::applicationPid; }

Reading attribute(const Element& element, const char* name) {
  const Uncounted uncounted;
  count();
  Slot slot = footprint::slotOf(element, name);
  return {std::move(slot.value), {slot.error, false}};
}

Readings attributes(const Element& element, const std::vector<const char*>& names) {
  const Uncounted uncounted;
  count();
  Readings readings;
  readings.slots.reserve(names.size());
  for (const char* name : names) readings.slots.push_back(footprint::slotOf(element, name));
  return readings;
}

ActionNames actionNames(const Element& /*element*/) {
  count();
  return {};
}

Hit elementAt(const Element& /*application*/, platform::Point /*point*/) {
  count();
  return {std::nullopt, {Error::noValue, false}};
}

Outcome perform(const Element& /*element*/, const char* /*action*/) {
  count();
  return {};
}

Outcome setAttribute(const Element& /*element*/, const char* /*name*/, const Value& /*value*/) {
  count();
  return {};
}

std::uint64_t hash(const Element& /*element*/) { return 0; }
std::uint64_t hash(const Value& /*value*/) { return 0; }
bool trusted() { return true; }

}  // namespace ax

// Of ASCII texts alone.
namespace text {

using footprint::Uncounted;

std::string lowercase(std::string_view text) {
  const Uncounted uncounted;
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
  return lower;
}

bool equal(std::string_view a, std::string_view b) { return a == b; }

std::string canonical(std::string_view text) {
  const Uncounted uncounted;
  return std::string(text);
}

std::vector<std::string> characters(std::string_view text) {
  const Uncounted uncounted;
  std::vector<std::string> each;
  for (const char character : text) each.emplace_back(1, character);
  return each;
}

std::string prefix(std::string_view text, std::size_t count) {
  const Uncounted uncounted;
  return std::string(text.substr(0, count));
}

std::string trimmedBlanks(std::string_view text) {
  const Uncounted uncounted;
  return std::string(text);
}

std::vector<std::string> words(std::string_view text) {
  const Uncounted uncounted;
  return text.empty() ? std::vector<std::string>() : std::vector<std::string>{std::string(text)};
}

}  // namespace text
