#include "simulator/text/error.h"

#include <utility>

#include "simulator/text/nearest.h"

namespace simulator {

namespace {

/// " (used in line 12, included in line 3 of desk.world)", from the innermost on.
std::string trailText(const Spot& spot) {
  std::string text;
  for (const Trail* trail = spot.trail.get(); trail != nullptr; trail = trail->by.trail.get()) {
    text += text.empty() ? " (" : ", ";
    text += trail->verb + std::string(" in line ") + std::to_string(trail->by.line);
    const std::string& from = fileOf(trail->by);
    if (from != trail->file) text += from.empty() ? " of the world" : " of " + from;
  }
  return text.empty() ? text : text + ')';
}

}  // namespace

const std::string& fileOf(const Spot& spot) {
  static const std::string own;
  return spot.trail == nullptr ? own : spot.trail->file;
}

std::string messageOf(const Complaint& complaint) {
  return complaint.cause + suggestion(complaint.meant) + trailText(complaint.spot);
}

WorldError::WorldError(Complaint complaint)
    : std::runtime_error("line " + std::to_string(complaint.spot.line) + ": " +
                         messageOf(complaint)),
      complaint_(std::move(complaint)) {}

}  // namespace simulator
