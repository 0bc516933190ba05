#include "tests/soak/happenings.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "tests/soak/elements.h"
#include "tests/soak/mac.h"
#include "tests/soak/texts.h"

namespace soak {

namespace {

std::string somePoint(Random& random, const MacSketch& mac) {
  const Place place = anyPlace(random, mac);
  const Point point = someWhereIn(random, place);
  return pointText(point.x, point.y);
}

/// Input of the user's, at times the tool's own in the user's place, or for one application.
std::string input(Random& random, const MacSketch& mac, std::string text) {
  if (random.oneIn(12)) text += " tagged";
  if (random.oneIn(20)) text += " for " + applicationText(random.pick(mac.applications));
  return text;
}

std::string someMove(Random& random, const MacSketch& mac) {
  const std::string text = random.oneIn(3)
                               ? "user scroll 0," + std::to_string(random.between(-3, 3))
                               : "user move " + somePoint(random, mac);
  return input(random, mac, text);
}

std::string someClick(Random& random, const MacSketch& mac) {
  if (random.oneIn(3)) return "front " + applicationText(random.pick(mac.applications));
  const std::string point = somePoint(random, mac);
  std::string text = "user click " + point;
  if (random.oneIn(8)) text = "user drag " + point + " to " + somePoint(random, mac);
  if (random.oneIn(6)) text += " right";
  return input(random, mac, text);
}

std::string someKey(Random& random, const MacSketch& mac) {
  if (mac.features.marking && random.oneIn(4)) return "user key ^";
  constexpr std::array<std::string_view, 12> keys = {
      "a",     "q",    "Z",         "return", "shift return", "cmd s",
      "cmd v", "left", "backspace", "tab",    "escape",       "option shift x"};
  std::string text = "user key " + std::string(random.pick(keys));
  if (random.oneIn(6)) text = random.oneIn(2) ? "user press shift" : "user release shift";
  return input(random, mac, text);
}

std::string someCopy(Random& random, const MacSketch& mac) {
  return "user copy " + inQuotes(prose(random, mac.features));
}

std::string someSwitch(Random& random, const MacSketch& mac) {
  constexpr std::array<std::string_view, 5> acts = {"front", "front", "quit", "hang", "recover"};
  const std::string_view act = random.pick(acts);
  return std::string(act) + " " + applicationText(random.pick(mac.applications));
}

std::string someSessionChange(Random& random, const MacSketch& /*mac*/) {
  constexpr std::array<std::string_view, 6> acts = {"lock",   "lock",          "unlock",
                                                    "unlock", "leave console", "return to console"};
  return std::string(random.pick(acts));
}

std::string someHardware(Random& random, const MacSketch& /*mac*/) {
  constexpr std::array<std::string_view, 6> acts = {
      "connect display 2 800x600 at 1440,0", "disconnect display 2", "replug display 1",
      "connect display 1 1024x768",          "disconnect display 1", "remove displays"};
  return std::string(random.pick(acts));
}

std::string someSystemAct(Random& random, const MacSketch& mac) {
  constexpr std::array<std::string_view, 7> acts = {
      "withdraw recording", "withdraw accessibility", "disable taps",   "disable taps timeout",
      "silence taps",       "invalidate taps",        "end process 900"};
  if (random.oneIn(4)) return "stop sharing " + applicationText(random.pick(mac.applications));
  return std::string(random.pick(acts));
}

std::string someSignal(Random& random, const MacSketch& /*mac*/) {
  constexpr std::array<std::string_view, 8> acts = {
      "signal 15",           "signal 2", "signal 1",     "signal 15",
      "request termination", "end-loop", "close output", "close input"};
  return std::string(random.pick(acts));
}

std::string someEndOfService(Random& /*random*/, const MacSketch& /*mac*/) {
  return "end process " + std::to_string(servicePid);
}

/// What an application does by itself.
std::string someDeed(Random& random, const MacSketch& mac) {
  const ApplicationSketch& application = random.pick(mac.applications);
  std::string deed = reaction(random, mac.features, application);
  // These are about an element of their own.
  if (deed.ends_with("toggle") || deed.ends_with("choose")) deed = "paste";
  return "in " + applicationText(application) + " " + deed;
}

struct HappeningMaker {
  bool Features::*feature;
  std::string (*text)(Random& random, const MacSketch& mac);
};

constexpr std::array makers = {
    HappeningMaker{&Features::userMoves, someMove},
    HappeningMaker{&Features::userClicks, someClick},
    HappeningMaker{&Features::userTypes, someKey},
    HappeningMaker{&Features::userCopies, someCopy},
    HappeningMaker{&Features::userSwitches, someSwitch},
    HappeningMaker{&Features::session, someSessionChange},
    HappeningMaker{&Features::hardware, someHardware},
    HappeningMaker{&Features::system, someSystemAct},
    HappeningMaker{&Features::signals, someSignal},
    HappeningMaker{&Features::serviceEnds, someEndOfService},
    HappeningMaker{&Features::later, someDeed},
};

/// Whoever reads what the runs write stops for a while.
void addStall(Random& random, Microseconds time,
              std::vector<std::pair<Microseconds, std::string>>& happenings) {
  happenings.emplace_back(time, "stall output");
  const Microseconds longest = random.oneIn(4) ? 3'000'000 : 400'000;
  happenings.emplace_back(time + random.between(1, longest), "resume output");
}

std::string atTime(Microseconds time, const std::string& happening) {
  return "at " + std::to_string(time) + "us " + happening;
}

/// Some happen again, though not for ever.
std::string repeated(Random& random, std::string happening) {
  if (!random.oneIn(8)) return happening;
  constexpr std::int64_t quarterOfASecond = 250'000;
  const std::int64_t interval =
      random.oneIn(4) ? quarterOfASecond : random.between(1, 2 * quarterOfASecond);
  const std::int64_t times = random.between(2, 5);
  return "every " + std::to_string(interval) + "us " + std::to_string(times) + " times " +
         std::move(happening);
}

}  // namespace

std::string someHappening(Random& random, const MacSketch& mac) {
  std::vector<const HappeningMaker*> allowed;
  for (const HappeningMaker& maker : makers) {
    if (mac.features.*maker.feature) allowed.push_back(&maker);
  }
  return allowed.empty() ? "" : random.pick(allowed)->text(random, mac);
}

std::vector<WorldLine> someHappenings(Random random, const MacSketch& mac, Microseconds duration) {
  std::vector<std::pair<Microseconds, std::string>> happenings;
  const std::size_t bursts = random.below(6);
  for (std::size_t i = 0; i < bursts; ++i) {
    Microseconds time = random.between(0, duration);
    if (mac.features.signals && random.oneIn(4)) addStall(random, time, happenings);
    const std::size_t count = 1 + random.below(random.oneIn(3) ? 8 : 2);
    for (std::size_t each = 0; each < count; ++each) {
      std::string text = someHappening(random, mac);
      if (text.empty()) return {};
      if (mac.features.later) text = repeated(random, std::move(text));
      happenings.emplace_back(time, std::move(text));
      time += random.between(0, random.oneIn(3) ? 300'000 : 15'000);
    }
  }
  std::stable_sort(happenings.begin(), happenings.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  std::vector<WorldLine> lines;
  for (const auto& [time, text] : happenings) lines.push_back({atTime(time, text)});
  return lines;
}

}  // namespace soak
