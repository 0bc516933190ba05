#include "tests/soak/applications.h"

#include <array>
#include <string_view>

#include "tests/soak/elements.h"
#include "tests/soak/texts.h"

namespace soak {

namespace {

constexpr std::array<std::string_view, 6> applicationNames = {"Browser", "Notes", "Mail",
                                                              "Chat",    "Docs",  "My Notes"};
constexpr std::array<std::string_view, 6> applicationBundles = {
    "com.example.browser", "com.example.notes", "com.example.mail",
    "com.example.chat",    "com.example.docs",  "com.example.own"};
constexpr std::int64_t firstPid = 40;
constexpr std::int64_t windowsOfEach = 10;

std::string millisecondsText(Random& random, std::int64_t most) {
  return std::to_string(random.between(1, most)) + "ms";
}

/// What kind of application it is, and how it answers.
void addManners(Random& random, const Features& features, WorldLine& line) {
  auto& options = line.options;
  if (features.chromium && random.oneIn(2)) {
    options.emplace_back("chromium");
    if (random.oneIn(2)) options.push_back("tree after " + millisecondsText(random, 900));
    if (random.oneIn(4)) options.emplace_back("rejects-enabling");
  }
  if (features.tracking) options.emplace_back("tracks menus");
  if (features.slow && random.oneIn(2)) {
    options.push_back("answers after " + millisecondsText(random, random.oneIn(10) ? 7000 : 20));
  }
  if (features.slow && random.oneIn(3)) {
    options.push_back("pastes after " + millisecondsText(random, 600));
  }
  if (features.hanging && random.oneIn(2)) options.emplace_back("hangs");
  if (features.hidden && random.oneIn(3)) options.emplace_back("hidden");
  if (features.oddApplications && random.oneIn(3)) {
    options.emplace_back(random.oneIn(2) ? "accessory" : "prohibited");
  }
  if (random.oneIn(12)) options.emplace_back("no-focused-window");
}

void addOddities(Random& random, WorldLine& line, bool hasElement) {
  constexpr std::array<std::string_view, 7> oddities = {
      "layer 3",    "layer 101",        "off-screen", "not-capturable",
      "unnumbered", "subrole AXDialog", "modal"};
  line.options.emplace_back(random.pick(oddities));
  if (random.oneIn(6)) line.options.push_back("listed as 4294967296");
  if (hasElement && random.oneIn(6)) line.options.emplace_back("closed");
}

std::string windowHead(const WindowSketch& window) {
  std::string head = "window " + std::to_string(window.number);
  if (!window.title.empty()) head += " " + inQuotes(window.title);
  return head + " " + placeText(window.place);
}

/// An application's windows: several of one title and frame now and then, as a browser has them.
void addWindows(Random& random, std::int64_t firstNumber, const MacSketch& mac,
                ApplicationSketch& sketch, WorldLine& application) {
  const Features& features = mac.features;
  const std::size_t least = mac.aim == nullptr ? 0 : 1;
  const std::size_t count = least + random.below(random.oneIn(4) ? 5 : 3);
  for (std::size_t i = 0; i < count; ++i) {
    const bool isTwin = i > 0 && random.oneIn(8);
    WindowSketch window;
    window.number = firstNumber + static_cast<std::int64_t>(i);
    const Place& display = random.pick(mac.displays);
    window.place = {display.x + random.between(-50, 500), display.y + random.between(0, 300), 0, 0};
    window.place.width = random.between(30, 500);
    window.place.height = random.between(30, 400);
    // As much of it on one display as on the other.
    const bool isHalved = mac.aim != nullptr && mac.displays.size() > 1 && random.oneIn(3);
    if (isHalved) window.place.x = mac.displays.front().width - window.place.width / 2;
    window.title = title(random, features);
    if (features.oddWindows && random.oneIn(4)) window.title.clear();
    if (isTwin) {
      window.title = sketch.windows.back().title;
      window.place = sketch.windows.back().place;
    }
    const bool isSheet = features.sheets && i > 0 && random.oneIn(2);
    WorldLine line{windowHead(window)};
    const bool hasElement = isSheet || !(features.oddWindows && random.oneIn(8));
    if (isSheet) {
      line.options.push_back("sheet of " + std::to_string(sketch.windows.front().number));
      if (random.oneIn(3)) line.options.emplace_back("closed");
    } else if (features.oddWindows && random.oneIn(2)) {
      addOddities(random, line, hasElement);
    }
    if (!hasElement) line.options.emplace_back("no-element");
    if (features.hidden && hasElement && random.oneIn(6)) line.options.emplace_back("minimized");
    if (hasElement) line.lines = someElements(random, mac, window.place, sketch);
    // A sheet hangs on the first window, which must have an element.
    if (i == 0 && !hasElement && features.sheets) line.options.pop_back();
    application.lines.push_back(std::move(line));
    sketch.windows.push_back(std::move(window));
  }
}

/// A menu bar as an application with menus of its own making tells of it: items have the character
/// of a shortcut, and not all of them its modifiers.
void addMenuBarOfElements(Random& random, const Features& features, ApplicationSketch& sketch,
                          WorldLine& application) {
  WorldLine menu{"AXMenu"};
  const std::size_t count = 1 + random.below(4);
  for (std::size_t i = 0; i < count; ++i) {
    constexpr std::array<std::string_view, 4> characters = {"S", "V", "Z", "A"};
    const std::string title = label(random, features);
    WorldLine item{"AXMenuItem " + inQuotes(title)};
    const std::string character(random.pick(characters));
    item.options.push_back("attribute AXMenuItemCmdChar " + inQuotes(character));
    if (random.oneIn(2)) {
      const std::string modifiers = std::to_string(random.below(4));
      item.options.push_back("attribute AXMenuItemCmdModifiers " + modifiers);
    }
    menu.lines.push_back(std::move(item));
    sketch.menus.push_back({"File", title});
  }
  WorldLine file{"AXMenuBarItem \"File\"", {}, {std::move(menu)}};
  application.lines.push_back({"AXMenuBar", {}, {std::move(file)}});
}

void addMenus(Random& random, const Features& features, ApplicationSketch& sketch,
              WorldLine& application) {
  constexpr std::array<std::string_view, 4> bars = {"File", "Edit", "View", "file"};
  constexpr std::array<std::string_view, 8> keys = {
      "cmd s", "cmd v", "cmd shift s", "cmd option s", "cmd z", "control a", "cmd return", "cmd a"};
  const std::size_t count = 1 + random.below(5);
  for (std::size_t i = 0; i < count; ++i) {
    std::vector<std::string> path = {std::string(random.pick(bars))};
    path.push_back(random.oneIn(4) ? "Paste" : label(random, features));
    if (random.oneIn(4)) path.back() += random.oneIn(2) ? "\u2026" : "...";
    if (random.oneIn(4)) path.push_back(label(random, features));
    WorldLine line{"menu"};
    for (std::size_t word = 0; word < path.size(); ++word) {
      line.head += (word == 0 ? " " : " > ") + inQuotes(path[word]);
    }
    if (random.oneIn(2)) line.options.emplace_back(random.pick(keys));
    if (random.oneIn(6)) line.options.emplace_back("disabled");
    if (random.oneIn(10)) line.options.emplace_back("alternate");
    application.lines.push_back(std::move(line));
    sketch.menus.push_back(std::move(path));
  }
}

/// One element of an application has the keyboard, most often.
bool focusField(Random& random, const Features& features, std::vector<WorldLine>& lines) {
  for (WorldLine& line : lines) {
    if (line.head.starts_with("AXText") && random.oneIn(2)) {
      line.options.insert(line.options.begin(), "focused");
      if (features.marking && random.oneIn(2)) {
        line.options.emplace_back(random.oneIn(2) ? "marked 0+2" : "marked 1+3 lost");
      }
      return true;
    }
    if (focusField(random, features, line.lines)) return true;
  }
  return false;
}

}  // namespace

void addApplication(Random& random, std::size_t number, bool frontmost, MacSketch& mac,
                    std::vector<WorldLine>& world) {
  const Features& features = mac.features;
  const auto place = static_cast<std::int64_t>(number);
  ApplicationSketch sketch;
  sketch.pid = firstPid + place;
  const bool isTwin = features.oddApplications && number > 0 && random.oneIn(4);
  sketch.name = applicationNames[isTwin ? number - 1 : number];
  sketch.bundle = applicationBundles[isTwin ? number - 1 : number];
  WorldLine line{"app " + inQuotes(sketch.name) + " pid " + std::to_string(sketch.pid)};
  if (features.oddApplications && random.oneIn(4)) {
    line.options.emplace_back("unbundled");
    sketch.bundle.clear();
  } else {
    line.options.push_back("bundle " + sketch.bundle);
  }
  if (features.oddApplications && random.oneIn(5)) {
    line.options.emplace_back("unnamed");
    sketch.name.clear();
  }
  if (frontmost) line.options.emplace_back("frontmost");
  addManners(random, features, line);
  if (mac.aim != nullptr && mac.aim->command == "ax-focused" && random.oneIn(2)) {
    line.options.emplace_back("failing AXFocusedUIElement -25212");
  }
  addWindows(random, 1 + place * windowsOfEach, mac, sketch, line);
  if (features.menus) {
    const auto add = random.oneIn(3) ? addMenuBarOfElements : addMenus;
    add(random, features, sketch, line);
  }
  if (!random.oneIn(4)) focusField(random, features, line.lines);
  addReactions(random, features, sketch, line.lines);
  world.push_back(std::move(line));
  mac.applications.push_back(std::move(sketch));
}

}  // namespace soak
