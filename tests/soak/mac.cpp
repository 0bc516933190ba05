#include "tests/soak/mac.h"

#include <array>
#include <string_view>

#include "simulator/text/releases.h"
#include "tests/soak/applications.h"
#include "tests/soak/texts.h"

namespace soak {

namespace {

constexpr std::size_t applicationsMax = 5;
constexpr std::int64_t panelPid = 50;
constexpr std::int64_t panelWindow = 90;

void addDisplays(Random& random, GeneratedMac& mac) {
  Place main{0, 0, 1440, 900};
  if (random.oneIn(2)) main = {0, 0, 400, 300};
  const bool isSharp = random.oneIn(3);
  WorldLine first{"display 1 " + std::to_string(main.width) + "x" + std::to_string(main.height)};
  if (isSharp) first.options.emplace_back("scale 2");
  mac.world.push_back(std::move(first));
  mac.sketch.displays.push_back(main);
  if (!mac.sketch.features.displays) return;
  const Place second =
      random.oneIn(2) ? Place{main.width, -100, 800, 600} : Place{-640, 40, 640, 480};
  WorldLine line{"display 2 " + std::to_string(second.width) + "x" + std::to_string(second.height) +
                 " at " + pointText(second.x, second.y)};
  if (random.oneIn(4)) line.options.emplace_back("mode unreadable");
  mac.world.push_back(std::move(line));
  mac.sketch.displays.push_back(second);
}

void addDenials(Random& random, std::vector<WorldLine>& world) {
  constexpr std::array<std::string_view, 22> denials = {"deny accessibility",
                                                        "deny screen-recording",
                                                        "deny keys-in-taps",
                                                        "deny display-hold",
                                                        "session locked",
                                                        "session off-console",
                                                        "session unreadable",
                                                        "session without-console-key",
                                                        "session locks after 450ms",
                                                        "missing SLEventPostToPid",
                                                        "missing SLEventSetIntegerValueField",
                                                        "missing SLPSPostEventRecordTo",
                                                        "missing GetProcessForPID",
                                                        "missing GetFrontProcess",
                                                        "missing GetProcessPID",
                                                        "missing _AXUIElementGetWindow",
                                                        "missing SACLockScreenImmediate",
                                                        "missing CGEventSetWindowLocation",
                                                        "missing SkyLight",
                                                        "missing ApplicationServices",
                                                        "missing login",
                                                        "directory \"\""};
  const std::size_t count = 1 + random.below(2);
  for (std::size_t i = 0; i < count; ++i) {
    world.push_back({std::string(random.pick(denials))});
  }
}

void addPasteboard(Random& random, const Features& features, std::vector<WorldLine>& world) {
  const std::size_t count = 1 + random.below(3);
  for (std::size_t i = 0; i < count; ++i) {
    WorldLine line{"pasteboard item \"public.utf8-plain-text\" " +
                   inQuotes(prose(random, features))};
    if (random.oneIn(3)) line.options.emplace_back("\"public.rtf\" \"{old}\"");
    if (random.oneIn(5)) line.options.emplace_back("promises \"com.example.lazy\"");
    world.push_back(std::move(line));
  }
}

void addHabitsOfUser(Random& random, std::vector<WorldLine>& world) {
  constexpr std::array<std::string_view, 9> lines = {
      "keyboard german", "keyboard french", "keyboard japanese", "languages zh-Hans,en",
      "macos 14.6",      "macos 15.1",      "idle never",        "user \"\" login ada unparsable",
      "idle 5s"};
  world.push_back({std::string(random.pick(lines))});
  if (random.oneIn(3)) world.push_back({"pointer " + pointText(random.between(-10, 900), 200)});
}

/// What reactions open windows and add areas from.
void addTemplates(std::vector<WorldLine>& world) {
  WorldLine letter{"define Letter(title)"};
  letter.lines = {{"window new {title} at 60,50 size 240x160"}};
  letter.lines[0].lines = {{"AXTextArea {title} at 70,90 size 200x60 focused"},
                           {"AXButton \"Close it\" at 70,60 size 80x20 press: close window"}};
  WorldLine pages{"define Pages(title)"};
  pages.lines = {{"AXScrollArea {title} at 70,60 size 80x40 scrolls"}};
  pages.lines[0].lines = {{"AXButton \"Page\" at 70,60 size 80x90 press: remove \"Page\""}};
  world.push_back(std::move(letter));
  world.push_back(std::move(pages));
}

/// A release of macOS, at times with a setting of its own. A read of the pasteboard that does not
/// come back leaves a run that nothing ends.
void addRelease(Random& random, std::vector<WorldLine>& world) {
  constexpr std::array<std::string_view, 5> settings = {
      "recording-question never", "pasteboard-reads refused", "key-taps refused",
      "closed-window inactive", "closed-window stopped"};
  const auto& release = random.pick(simulator::releases);
  world.push_back({"macos " + std::to_string(release.number)});
  if (random.oneIn(2)) world.push_back({"system " + std::string(random.pick(settings))});
}

std::string panelLine(std::int64_t number, const WindowSketch& window) {
  return "panel pid " + std::to_string(panelPid + number) + " window " +
         std::to_string(panelWindow + number) + " over " + std::to_string(window.number);
}

/// A panel over a window, at times two, of which no run names either as its target.
void addPanels(Random& random, GeneratedMac& mac) {
  const ApplicationSketch& below = random.pick(mac.sketch.applications);
  if (below.windows.empty()) return;
  const WindowSketch& window = below.windows.front();
  mac.world.push_back({panelLine(0, window)});
  if (random.oneIn(3)) {
    mac.world.push_back({panelLine(1, window)});
    return;
  }
  ApplicationSketch panel;
  panel.pid = panelPid;
  panel.bundle = "com.apple.appkit.xpc.openAndSavePanelService";
  const Place place{window.place.x, window.place.y, 480, 200};
  panel.windows.push_back({panelWindow, "Save", place});
  mac.sketch.applications.push_back(std::move(panel));
}

}  // namespace

GeneratedMac someMac(Random random, const Features& features, const Aim* aim) {
  GeneratedMac mac;
  mac.sketch.features = features;
  mac.sketch.aim = aim;
  addDisplays(random, mac);
  mac.sketch.processes.push_back(servicePid);
  mac.world.push_back({"process " + std::to_string(servicePid)});
  if (features.denials) addDenials(random, mac.world);
  if (features.pasteboard) addPasteboard(random, features, mac.world);
  if (features.otherKeyboard) addHabitsOfUser(random, mac.world);
  const std::size_t count = 1 + random.below(aim == nullptr ? applicationsMax : 2);
  const std::size_t front = random.below(count + 1);  // at times none
  for (std::size_t i = 0; i < count; ++i) {
    addApplication(random, i, i == front, mac.sketch, mac.world);
  }
  if (features.panel) addPanels(random, mac);
  if (features.templates) addTemplates(mac.world);
  if (features.marking) {
    mac.world.push_back(
        {random.oneIn(2) ? "keyboard german dead-keys" : "keyboard french dead-keys"});
  }
  if (features.releases) addRelease(random, mac.world);
  return mac;
}

}  // namespace soak
