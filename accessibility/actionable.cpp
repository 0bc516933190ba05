#include "accessibility/actionable.h"

#include <utility>

#include "accessibility/element.h"
#include "accessibility/messages.h"
#include "accessibility/roles.h"
#include "main/globals.h"

namespace driver {

namespace {

constexpr int examinedMax = 12;

/// The element or the nearest above it that can be acted on.
std::optional<Snapshot> actionableFrom(std::optional<ax::Element> element) {
  const Batch batch({Attribute::role, Attribute::editable, Attribute::parent});
  for (int examined = 0; element && examined < examinedMax; ++examined) {
    Snapshot now(*element);
    now.read(batch);
    if (hasRole(actionableRoles, now.role()) || now.isTrue(Attribute::editable)) return now;
    element = now.related(Attribute::parent);
  }
  return std::nullopt;
}

}  // namespace

std::optional<Snapshot> axActionable(platform::Point point, const ax::Element& application) {
  std::optional<Snapshot> found = actionableFrom(messages::elementAt(application, point));
  if (!found || !globals().windowScope) return found;
  const std::optional<ax::Element> window = found->related(Attribute::window);
  return window && axWindowInScope(*window) ? std::move(found) : std::nullopt;
}

}  // namespace driver
