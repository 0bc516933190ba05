#include "input/menu_equivalent.h"

#include <string>
#include <string_view>

#include "accessibility/element.h"
#include "accessibility/snapshot.h"
#include "accessibility/walk.h"
#include "input/key_codes.h"
#include "platform/quartz.h"
#include "platform/text.h"

namespace driver {

namespace {

constexpr WalkBounds menuBounds = {20'000, 6};

/// The modifiers of a shortcut as menu items have them.
int menuModifiers(std::uint64_t flags) {
  int mask = 0;
  if (hasModifier(flags, quartz::Modifier::shift)) mask += 1;
  if (hasModifier(flags, quartz::Modifier::option)) mask += 2;
  if (hasModifier(flags, quartz::Modifier::control)) mask += 4;
  return mask;
}

bool hasShortcut(Snapshot& element, std::string_view character, int modifiers) {
  if (element.role() != "AXMenuItem") return false;
  const std::string* own = element.text(Attribute::menuCharacter);
  if (own == nullptr || text::lowercase(*own) != character) return false;
  return element.number(Attribute::menuModifiers).value_or(0) == modifiers;
}

}  // namespace

std::optional<ax::Element> menuEquivalent(platform::Pid pid, std::uint16_t code,
                                          std::uint64_t flags) {
  const std::optional<std::string_view> character = characterOfKey(code);
  if (!character) return std::nullopt;
  std::optional<ax::Element> bar = axElement(ax::application(pid), "AXMenuBar");
  if (!bar) return std::nullopt;
  const int modifiers = menuModifiers(flags);
  Walk walk(
      {std::move(*bar)},
      {Attribute::role, Attribute::enabled, Attribute::menuCharacter, Attribute::menuModifiers},
      menuBounds);
  while (Snapshot* element = walk.next()) {
    if (!hasShortcut(*element, *character, modifiers)) continue;
    if (!element->isFalse(Attribute::enabled)) return element->element();
  }
  return std::nullopt;
}

}  // namespace driver
