#include "simulator/companion/news.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/numbers.h"
#include "simulator/companion/about.h"
#include "simulator/companion/looks.h"
#include "simulator/drawing/picture_codec.h"
#include "simulator/mac/json_text.h"

namespace companion {

namespace {

using nlohmann::json;
using simulator::Mac;
using simulator::World;

/// Nobody reads more at once. Of what came before he is told how much it was.
constexpr std::size_t newsEntriesMax = 2'000;
constexpr std::size_t newsBytesMax = std::size_t{4} << 20U;

json framed(const simulator::Rect& frame) {
  return {{"height", frame.height}, {"width", frame.width}, {"x", frame.x}, {"y", frame.y}};
}

json applicationsOf(const World& world) {
  json applications = json::array();
  for (const simulator::Application& each : world.applications) {
    applications.push_back({{"name", simulator::textJson(each.name.value_or(""))},
                            {"pid", each.pid},
                            {"running", each.running}});
  }
  return applications;
}

json displaysOf(const World& world) {
  json displays = json::array();
  for (const simulator::Display& each : world.displays) {
    displays.push_back({{"frame", framed(each.frame)}, {"number", each.id}});
  }
  return displays;
}

/// How the Mac is, but for its entries and its picture.
json summaryOf(const Watched& watched) {
  const Mac& mac = watched.desktop.mac();
  return {{"applications", applicationsOf(mac.world)},
          {"displays", displaysOf(mac.world)},
          {"entry", mac.entries},
          {"now", static_cast<double>(mac.now) / 1000},
          {"ok", true},
          {"pace", watched.pace},
          {"stamp", stampOf(watched)},
          {"time", timeName(watched.time)}};
}

/// The lines of what came after an entry, the latest first.
std::vector<std::string> latestLines(const Mac& mac, std::int64_t known) {
  std::vector<std::string> lines;
  std::size_t bytes = 0;
  const auto first = simulator::entriesAfter(mac, known);
  for (auto entry = mac.journal.end(); entry != first && lines.size() < newsEntriesMax;) {
    std::string line = simulator::journalLine(*--entry);
    bytes += line.size();
    if (bytes > newsBytesMax) break;
    lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace

std::optional<Known> knownOf(const std::vector<std::string>& words) {
  if (words.size() != 4 || words[0] != "news") return std::nullopt;
  const auto entry = driver::parseInt64(words[1]);
  if (!entry) return std::nullopt;
  return Known{*entry, words[2], words[3]};
}

std::string stampOf(const Watched& watched) {
  const Mac& mac = watched.desktop.mac();
  // Real time passes by itself.
  const bool isVirtual = watched.time == simulator::Scheduler::Time::virtualTime;
  return std::to_string(mac.entries) + "/" + std::to_string(isVirtual ? mac.now : 0) + "/" +
         std::to_string(watched.desktop.faults().size()) + "/" + watched.pace.dump();
}

ControlAnswer newsOf(const Watched& watched, const Known& known) {
  const Mac& mac = watched.desktop.mac();
  json summary = summaryOf(watched);
  std::string picture;
  summary["look"] = "";
  if (!mac.world.displays.empty()) {
    const simulator::Picture screens = plainScreens(mac.world);
    summary["look"] = lookOf(screens);
    summary["frame"] = framed(screens.source);
    if (summary["look"] != known.look) picture = simulator::encodedPicture(screens);
  }
  auto lines = latestLines(mac, known.entry);
  summary["skipped"] = mac.entries - known.entry - static_cast<std::int64_t>(lines.size());
  ControlAnswer answer{true, {simulator::jsonLine(summary), picture}, 0};
  std::move(lines.rbegin(), lines.rend(), std::back_inserter(answer.lines));
  return answer;
}

}  // namespace companion
