#include "tests/soak/resumption.h"

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "simulator/companion/state.h"
#include "simulator/companion/tree.h"
#include "simulator/drawing/picture_codec.h"
#include "simulator/drawing/pictures.h"
#include "simulator/rules/left_behind.h"
#include "simulator/snapshot/snapshot.h"
#include "simulator/snapshot/world_text.h"
#include "simulator/text/error.h"
#include "simulator/text/parse.h"

namespace soak {

namespace {

using simulator::Desktop;

/// All that can be seen of a Mac, one thing an entry.
std::vector<std::string> seenOf(const Desktop& desktop) {
  const simulator::World& world = desktop.mac().world;
  std::vector<std::string> seen{companion::wholeState(desktop).dump(
      -1, ' ', false, nlohmann::json::error_handler_t::replace)};
  for (const auto& application : world.applications) {
    for (std::string& line : companion::treeLines(world, application)) {
      seen.push_back(std::move(line));
    }
  }
  seen.push_back(simulator::encodedPicture(simulator::screenPicture(world)));
  for (const simulator::Window& window : world.windows) {
    simulator::Picture picture;
    picture.source = window.frame;
    picture.windows = {simulator::pictureOf(world, window)};
    seen.push_back(simulator::encodedPicture(picture));
  }
  for (const std::string& each : simulator::leftBehind(desktop.mac())) seen.push_back(each);
  return seen;
}

void compare(const Desktop& before, const Desktop& after) {
  const auto seen = seenOf(before);
  const auto again = seenOf(after);
  if (seen.size() != again.size()) throw ResumptionFailure("there is more or less to be seen");
  for (std::size_t i = 0; i < seen.size(); ++i) {
    if (seen[i] != again[i]) throw ResumptionFailure("was " + seen[i] + ", is " + again[i]);
  }
}

}  // namespace

std::unique_ptr<Desktop> resumed(const Desktop& desktop) {
  try {
    const std::string text = simulator::snapshotText(desktop);
    auto after = std::make_unique<Desktop>(simulator::parseWorld(text));
    const std::string again = simulator::snapshotText(*after);
    if (text != again) throw ResumptionFailure("snapshot " + text + " became " + again);
    compare(desktop, *after);
    return after;
  } catch (const simulator::UnwritableWorld& unwritable) {
    throw ResumptionFailure(unwritable.what());
  } catch (const simulator::WorldError& error) {
    throw ResumptionFailure(error.what());
  }
}

}  // namespace soak
