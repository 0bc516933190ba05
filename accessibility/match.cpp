#include "accessibility/match.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <tuple>
#include <utility>

#include "accessibility/element.h"
#include "accessibility/labels.h"
#include "accessibility/messages.h"
#include "accessibility/roles.h"
#include "accessibility/snapshot.h"
#include "accessibility/walk.h"
#include "base/geometry.h"
#include "main/globals.h"

namespace driver {

namespace {

// What is hit may be an icon or a text deep inside its control. Beyond so many levels it is no
// longer a control that surrounds it, but the page.
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
  if (!found || !isInWindowScope(found->element())) return std::nullopt;
  return found;
}

namespace {

constexpr AttributeSet matchAttributes =
    AttributeSet{Attribute::role} | labelAttributes | frameAttributes;

struct Wanted {
  std::string label;
  std::string roleName;
  std::optional<Point> near;
  double radius = 0;
};

/// How well an element fits: the less the better.
struct Rank {
  MatchKind kind = MatchKind::label;
  double distance = 0;

  friend bool operator<(const Rank& a, const Rank& b) {
    return std::tie(a.kind, a.distance) < std::tie(b.kind, b.distance);
  }
};

struct Best {
  Snapshot element;
  Rank rank;
};

Wanted wantedFor(const std::string& label, Point near, double radius) {
  Wanted wanted{comparableLabel(label), {}, std::nullopt, radius};
  // Roles are written in one word, and an agent may write several: "pop up button".
  wanted.roleName = wanted.label;
  std::erase(wanted.roleName, ' ');
  if (near != noPoint) wanted.near = near;
  return wanted;
}

/// To the middle, since a control that is larger than the one that is meant may begin nearer.
double distanceTo(const Rect& frame, const std::optional<Point>& point) {
  if (!point || contains(frame, *point)) return 0;
  return std::hypot(point->x - (frame.x + frame.width / 2),
                    point->y - (frame.y + frame.height / 2));
}

/// How far the candidate is; none for what is no candidate.
std::optional<double> candidateDistance(Snapshot& element, const Wanted& wanted) {
  if (!hasRole(actionableRoles, element.role())) return std::nullopt;
  const std::optional<Rect> frame = axFrame(element);
  if (!frame || !(frame->width > 1)) return std::nullopt;
  const double distance = distanceTo(*frame, wanted.near);
  return distance <= wanted.radius ? std::optional(distance) : std::nullopt;
}

std::optional<MatchKind> kindOf(Snapshot& element, const Wanted& wanted, const Batch& each) {
  std::string label = comparableLabel(axLabel(element));
  // A field's text is what was typed into it, and no name for it.
  if (label.empty() && !hasRole(textRoles, element.role())) {
    label = comparableLabel(axText(element, each));
  }
  if (label == wanted.label) return MatchKind::label;
  if (label.empty()) {
    // Icons without any text are told from each other by where they are alone.
    const bool named = wanted.near && roleName(element.role()) == wanted.roleName;
    return named ? std::optional(MatchKind::role) : std::nullopt;
  }
  const bool contained = label.find(wanted.label) != std::string::npos ||
                         wanted.label.find(label) != std::string::npos;
  return contained ? std::optional(MatchKind::containedLabel) : std::nullopt;
}

std::optional<Best> bestMatch(const ax::Element& application, const Wanted& wanted) {
  std::optional<Best> best;
  Walk walk(axWindows(application), matchAttributes, controlBounds);
  while (Snapshot* element = walk.next()) {
    const std::optional<double> distance = candidateDistance(*element, wanted);
    // Its label cannot make it better than the best: there is no need to look for it.
    if (!distance || (best && !(Rank{MatchKind::label, *distance} < best->rank))) continue;
    const std::optional<MatchKind> kind = kindOf(*element, wanted, walk.batch());
    if (!kind || (best && !(Rank{*kind, *distance} < best->rank))) continue;
    // Nothing is better, and nothing below it is visited: it keeps its children.
    if (*kind == MatchKind::label && *distance == 0) return Best{std::move(*element), {}};
    best = Best{walk.take(), {*kind, *distance}};
  }
  return best;
}

}  // namespace

const char* wordOf(MatchKind kind) {
  constexpr std::array<const char*, 4> words = {"label", "label~", "role", "hit"};
  return words[static_cast<std::size_t>(kind)];
}

std::optional<Match> axMatch(const ax::Element& application, const std::string& label, Point near,
                             double radius) {
  const Wanted wanted = wantedFor(label, near, radius);
  if (!wanted.label.empty()) {
    std::optional<Best> best = bestMatch(application, wanted);
    if (best) return Match{std::move(best->element), best->rank.kind};
  }
  // The agent sees a picture, and may call what it points at by another word than the application.
  std::optional<Snapshot> hit = axActionable(near, application);
  return hit ? std::optional(Match{std::move(*hit), MatchKind::hit}) : std::nullopt;
}

void axButtons(const Walk& walk, std::size_t branch, Snapshot& element,
               std::vector<Button>& buttons) {
  if (!walk.inBranch(branch) || element.role() != "AXButton") return;
  std::string label = axLabel(element);
  if (!label.empty()) buttons.push_back({element.element(), std::move(label)});
}

}  // namespace driver
