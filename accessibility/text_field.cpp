#include "accessibility/text_field.h"

#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "accessibility/element.h"
#include "accessibility/roles.h"
#include "accessibility/walk.h"
#include "main/globals.h"

namespace driver {

namespace {

constexpr int levelsMax = 40;

constexpr std::array<std::string_view, 3> singleLineRoles = {"AXTextField", "AXComboBox",
                                                             "AXSearchField"};
constexpr std::array<std::string_view, 2> transientRoles = {"AXSheet", "AXPopover"};
constexpr std::array<std::string_view, 3> dialogSubroles = {"AXDialog", "AXSystemDialog",
                                                            "AXFloatingWindow"};

/// The application's own answer; none when it is outside the window scope.
std::optional<ax::Element> focusedElement(const ax::Element& application) {
  std::optional<ax::Element> focused = axElement(application, "AXFocusedUIElement");
  if (!focused || !globals().windowScope) return focused;
  const std::optional<ax::Element> window = axElement(*focused, "AXWindow");
  return window && axWindowInScope(*window) ? std::move(focused) : std::nullopt;
}

}  // namespace

bool isTextInput(Snapshot& element) {
  return hasRole(textRoles, element.role()) || element.isTrue(Attribute::editable);
}

bool isTransientField(Snapshot& field) {
  if (!hasRole(singleLineRoles, field.role())) return false;
  const Batch batch({Attribute::role, Attribute::subrole, Attribute::parent});
  std::optional<ax::Element> parent = field.related(Attribute::parent);
  for (int level = 0; parent && level < levelsMax; ++level) {
    Snapshot now(*parent);
    now.read(batch);
    if (hasRole(transientRoles, now.role())) return true;
    if (now.role() == "AXWindow") {
      const std::string* subrole = now.text(Attribute::subrole);
      return subrole != nullptr && hasRole(dialogSubroles, *subrole);
    }
    parent = now.related(Attribute::parent);
  }
  return false;
}

std::optional<Snapshot> axFocused(const ax::Element& application) {
  if (auto focused = focusedElement(application)) return Snapshot(std::move(*focused));
  std::optional<Snapshot> found;
  Walk walk(axWindows(application), {Attribute::role, Attribute::editable, Attribute::focused},
            controlBounds);
  while (Snapshot* element = walk.next()) {
    if (!isTextInput(*element) || !element->isTrue(Attribute::focused)) continue;
    if (found) return std::nullopt;
    found = walk.take();
  }
  return found;
}

}  // namespace driver
