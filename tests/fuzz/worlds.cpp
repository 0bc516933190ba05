#include "tests/fuzz/worlds.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "base/numbers.h"
#include "base/utf8.h"
#include "simulator/companion/control.h"
#include "simulator/desktop.h"
#include "simulator/snapshot/snapshot.h"
#include "simulator/snapshot/world_text.h"
#include "simulator/text/parse.h"

namespace fuzz {

namespace {

constexpr simulator::Microseconds life = 10'000'000;

/// A refusal names a line that is there.
std::string complaintAboutRefusal(const std::string& text, const std::string& refusal) {
  const std::string start = "line ";
  const std::size_t end = refusal.find(": ");
  if (!refusal.starts_with(start) || end == std::string::npos) return "it names no line";
  const auto line = driver::parseInt64(refusal.substr(start.size(), end - start.size()));
  const auto lines = std::count(text.begin(), text.end(), '\n') + 1;
  if (!line || *line < 1 || *line > lines) return "it names a line that is not there: " + refusal;
  return "";
}

std::string complaintAboutAnswer(const companion::ControlAnswer& answer) {
  for (const std::string& line : answer.lines) {
    if (!driver::isUtf8(line)) return "ill-formed: " + line;
    if (nlohmann::json::parse(line, nullptr, false).is_discarded()) return "no JSON: " + line;
  }
  return answer.ok ? "" : "it is not told: " + answer.lines.at(0);
}

/// What became of a world that could be read can be written, and read again.
std::string complaintAboutSnapshot(const simulator::Desktop& desktop) {
  try {
    simulator::Desktop(simulator::parseWorld(simulator::snapshotText(desktop)));
    return "";
  } catch (const simulator::UnwritableWorld& error) {
    return std::string("no snapshot: ") + error.what();
  } catch (const simulator::WorldError& error) {
    return std::string("a snapshot that is not read: ") + error.what();
  }
}

}  // namespace

std::string complaintAboutWorld(const std::string& input) {
  std::optional<simulator::World> world;
  try {
    world = simulator::parseWorld(input);
  } catch (const simulator::WorldError& error) {
    return complaintAboutRefusal(input, error.what());
  }
  simulator::Desktop desktop(std::move(*world));
  desktop.advanceTo(desktop.mac().now + life);
  for (const char* question : {"state", "tree", "journal", "violations"}) {
    const auto time = companion::Scheduler::Time::virtualTime;
    auto complaint = complaintAboutAnswer(companion::control(desktop, time, {question}));
    if (!complaint.empty()) return question + (": " + complaint);
  }
  return complaintAboutSnapshot(desktop);
}

}  // namespace fuzz
