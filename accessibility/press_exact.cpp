#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "accessibility/commands.h"
#include "accessibility/element.h"
#include "accessibility/info.h"
#include "accessibility/labels.h"
#include "accessibility/messages.h"
#include "accessibility/roles.h"
#include "accessibility/walk.h"
#include "main/replies.h"

namespace driver {

namespace {

/// The controls that have the label.
struct Labelled {
  std::int64_t count = 0;
  std::optional<ax::Element> lowest;  // on the screen
  double lowestTop = 0;               // of its frame
};

// What has no frame lies above all others: it is pressed only when there is nothing else.
double topOf(Snapshot& element) {
  const std::optional<Rect> frame = axFrame(element);
  if (!frame) return -std::numeric_limits<double>::infinity();
  return std::min(frame->y, frame->y + frame->height);
}

void collect(Snapshot& element, const std::string& label, Labelled& labelled) {
  if (!hasRole(actionableRoles, element.role())) return;
  if (comparableLabel(axLabel(element)) != label) return;
  ++labelled.count;
  const double top = topOf(element);
  if (labelled.lowest && top <= labelled.lowestTop) return;
  labelled.lowest = element.element();
  labelled.lowestTop = top;
}

bool isContainer(Snapshot& element, const std::string& label) {
  return element.role() == "AXGroup" && comparableLabel(axLabel(element)) == label;
}

/// The controls with the label, in the one container with its label when there is to be one. Fails
/// when that container is not unique.
Labelled labelledElements(const ax::Element& application, const std::string& label,
                          const std::optional<std::string>& container) {
  constexpr const char* notUnique = "the requested navigation container is not unique";
  Labelled labelled;
  bool inContainer = false;
  Walk walk(axWindows(application), infoAttributes, textBounds);
  while (Snapshot* element = walk.next()) {
    if (!container) {
      collect(*element, label, labelled);
      continue;
    }
    // The search goes on after the first container: a second one makes both ambiguous.
    if (walk.inTrunk() && isContainer(*element, *container)) {
      if (inContainer) fail(notUnique);
      inContainer = true;
      walk.beginBranch(textBounds);
    }
    if (inContainer && walk.inBranch(0)) collect(*element, label, labelled);
  }
  if (container && !inContainer) fail(notUnique);
  return labelled;
}

}  // namespace

void axPressExactCommand(const Arguments& arguments) {
  const std::string& label = arguments[3];
  // Whoever gives any other word than "only" has asked for less than that.
  const bool only = arguments.size() < 5 || arguments[4] == "only";
  std::optional<std::string> container;
  if (arguments.size() > 5) container = comparableLabel(arguments[5]);
  if (container == "") fail("empty navigation container");
  const Labelled labelled =
      labelledElements(axApp(arguments[2]), comparableLabel(label), container);
  if (!labelled.lowest) {
    emit(refusal("no element labelled " + quoted(label)));
    return;
  }
  if (only && labelled.count > 1) {
    emit(refusal(std::to_string(labelled.count) + " elements labelled " + quoted(label)));
    return;
  }
  Reply reply = actionReply(messages::perform(*labelled.lowest, "AXPress"));
  reply["element"] = axInfo(*labelled.lowest);
  reply["matches"] = labelled.count;
  emit(reply);
}

}  // namespace driver
