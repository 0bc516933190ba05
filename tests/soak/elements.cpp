#include "tests/soak/elements.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "tests/soak/habits.h"
#include "tests/soak/texts.h"

namespace soak {

namespace {

constexpr std::array<std::string_view, 12> controlRoles = {
    "AXButton", "AXButton",     "AXCheckBox",   "AXRadioButton", "AXLink",   "AXPopUpButton",
    "AXSlider", "AXMenuButton", "AXStaticText", "AXStaticText",  "AXSwitch", "AXImage"};

constexpr std::array<std::string_view, 5> fieldRoles = {"AXTextField", "AXTextArea", "AXTextArea",
                                                        "AXSearchField", "AXComboBox"};

constexpr std::array<std::string_view, 14> containerRoles = {
    "AXGroup", "AXScrollArea", "AXToolbar",    "AXTable",   "AXRow",   "AXCell",  "AXList",
    "AXRow",   "AXWebArea",    "AXSplitGroup", "AXPopover", "AXSheet", "AXGroup", "AXOutline"};

bool isField(const WorldLine& line) {
  for (const std::string_view role : fieldRoles) {
    if (line.head.starts_with(role)) return true;
  }
  return false;
}

bool isContainer(std::string_view role) {
  return std::find(containerRoles.begin(), containerRoles.end(), role) != containerRoles.end();
}

/// The elements of one window.
class Drawer {
 public:
  Drawer(Random& random, const MacSketch& mac, ApplicationSketch& application)
      : random_(random), features_(mac.features), aim_(mac.aim), application_(application) {}

  std::vector<WorldLine> elementsIn(const Place& place, std::size_t depth) {
    std::vector<WorldLine> lines;
    const std::size_t most = features_.largeTrees ? 40 : 6;
    const std::size_t least = depth == 0 || aim_ != nullptr ? 1 : 0;
    const std::size_t count = least + random_.below(depth == 0 ? most : 5);
    for (std::size_t i = 0; i < count; ++i) lines.push_back(element(place, depth));
    return lines;
  }

 private:
  WorldLine element(const Place& around, std::size_t depth) {
    const std::size_t depthMax = features_.deepTrees ? 7 : 2;
    const bool isDeepest = depth >= depthMax;
    if (aim_ != nullptr && !aim_->roles.empty() && !random_.oneIn(3)) {
      const std::string_view role = aimedRole(random_, *aim_);
      return isContainer(role) && !isDeepest ? container(around, depth, role)
                                             : control(around, depth, role);
    }
    const std::size_t kind = random_.below(8);
    if (kind < 2 && !isDeepest) return container(around, depth, random_.pick(containerRoles));
    if (kind < 5) return control(around, depth, random_.pick(controlRoles));
    return control(around, depth, random_.pick(fieldRoles));
  }

  std::optional<Place> placeWithin(const Place& around) {
    if (random_.oneIn(12)) return std::nullopt;
    if (features_.lies && random_.oneIn(8)) return Place{around.x - 500, around.y, 0, 20};
    const std::int64_t width = std::max<std::int64_t>(around.width / random_.between(1, 6), 4);
    const std::int64_t height = std::max<std::int64_t>(around.height / random_.between(1, 8), 4);
    const std::int64_t x = around.x + random_.between(0, std::max(around.width - width, width));
    const std::int64_t y = around.y + random_.between(0, std::max(around.height - height, height));
    return Place{x, y, width, height};
  }

  /// The label of the latest element of this role; empty when there is none.
  std::string labelBefore(std::string_view role) const {
    const auto& controls = application_.controls;
    const auto before = std::find_if(controls.rbegin(), controls.rend(), [&](const auto& each) {
      return each.role == role && !each.label.empty();
    });
    return before == controls.rend() ? "" : before->label;
  }

  /// The role, a label at times, a place at times.
  WorldLine headed(std::string_view role, const Place& around) {
    ControlSketch sketch;
    sketch.role = role;
    if (features_.twins && random_.oneIn(2)) sketch.label = labelBefore(role);
    if (role == "AXRow" && random_.oneIn(2)) sketch.label = random_.oneIn(2) ? "Row 1" : "Row 2";
    if (sketch.label.empty() && !random_.oneIn(3)) sketch.label = label(random_, features_);
    sketch.place = placeWithin(around);
    WorldLine line{std::string(role)};
    if (!sketch.label.empty()) line.head += " " + inQuotes(sketch.label);
    if (sketch.place) line.options.push_back(placeText(*sketch.place));
    // A label does not mean a sheet, which counts as a window.
    if (role == "AXSheet") sketch.label.clear();
    application_.controls.push_back(std::move(sketch));
    return line;
  }

  WorldLine container(const Place& around, std::size_t depth, std::string_view role) {
    WorldLine line = headed(role, around);
    const Place own = application_.controls.back().place.value_or(around);
    if (features_.endlessTrees && random_.oneIn(3)) {
      constexpr std::array<std::string_view, 3> ends = {"grows", "grows deeper", "shrinks"};
      line.options.emplace_back(random_.pick(ends));
    } else if (features_.largeTrees && random_.oneIn(3)) {
      const std::int64_t most = random_.oneIn(8) ? 2000 : 200;
      line.options.push_back("repeat " + std::to_string(random_.between(2, most)));
    } else if (features_.deepTrees && random_.oneIn(8)) {
      const std::string& other = random_.pick(application_.controls).label;
      if (!other.empty()) line.options.push_back("also under " + inQuotes(other));
    }
    if (features_.scrolling) addScrolling(role, line);
    if (random_.oneIn(10)) line.options.emplace_back("modal");
    addCommonHabits(random_, features_, line);
    line.lines = elementsIn(own, depth + 1);
    if (role == "AXRow" && random_.oneIn(2)) {
      for (WorldLine& each : line.lines) each.options.emplace_back("while hovered");
    }
    return line;
  }

  void addScrolling(std::string_view role, WorldLine& line) {
    const bool isList = role == "AXList" || role == "AXTable" || role == "AXOutline";
    if (isList && random_.oneIn(2)) line.options.emplace_back("stacks");
    if (role == "AXScrollArea" || random_.oneIn(6)) {
      line.options.emplace_back(random_.oneIn(3) ? "scrolls lazily" : "scrolls");
    }
  }

  /// A menu that is open: one of an application.
  WorldLine openMenu(const Place& around) {
    application_.hasOpenMenu = true;
    WorldLine menu{"AXMenu", {placeText({around.x, around.y, 120, 40}), "open"}, {}};
    for (const std::int64_t top : {0, 20}) {
      WorldLine item = headed("AXMenuItem", around);
      item.options = {placeText({around.x, around.y + top, 120, 20})};
      menu.lines.push_back(std::move(item));
    }
    return menu;
  }

  /// What stands in a control: a menu, or, in a field that makes no texts by itself, anything.
  void addContents(const Place& around, std::size_t depth, WorldLine& line) {
    const bool isWithMenu = line.head.starts_with("AXMenuButton") && !application_.hasOpenMenu;
    if (isWithMenu && random_.oneIn(2)) line.lines = {openMenu(around)};
    const bool isComposer =
        std::any_of(line.options.begin(), line.options.end(),
                    [](const auto& each) { return each.starts_with("composer"); });
    const bool isField = line.head.starts_with("AXTextArea") && features_.fieldHabits;
    if (isField && !isComposer && depth < 2 && random_.oneIn(4)) {
      line.lines = elementsIn(around, depth + 1);
    }
  }

  WorldLine control(const Place& around, std::size_t depth, std::string_view role) {
    WorldLine line = headed(role, around);
    const Place own = application_.controls.back().place.value_or(around);
    addHabits(random_, features_, role, line);
    addCommonHabits(random_, features_, line);
    addContents(own, depth, line);
    // More than one may say so.
    const bool isAskedForFocus =
        aim_ != nullptr && aim_->command == "ax-focused" && !features_.lies;
    if (isAskedForFocus && isField(line) && random_.oneIn(3)) {
      line.options.emplace_back("attribute AXFocused true");
    }
    return line;
  }

  Random& random_;
  const Features& features_;
  const Aim* aim_;
  ApplicationSketch& application_;
};

/// What makes something else of an element with this label.
std::string change(Random& random, const Features& features, const std::string& target,
                   const std::string& other) {
  switch (random.below(6)) {
    case 0:
      return "enable " + target;
    case 1:
      return "disable " + target;
    case 2:
      return "relabel " + target + " " + inQuotes(label(random, features));
    case 3:
      return "count " + target + (random.oneIn(2) ? " up" : " down by 3");
    case 4:
      return "set " + target + " value of " + other;
    default:
      return "move " + target + (random.oneIn(2) ? " above " : " below ") + other;
  }
}

std::string deed(Random& random, const Features& features, const ApplicationSketch& application) {
  std::string target;
  if (!application.controls.empty()) target = random.pick(application.controls).label;
  if (features.changing && !target.empty() && random.oneIn(2)) {
    const std::string& other = random.pick(application.controls).label;
    return change(random, features, inQuotes(target), inQuotes(other.empty() ? target : other));
  }
  if (features.templates && random.oneIn(3)) {
    const std::string name = inQuotes(title(random, features));
    if (target.empty() || random.oneIn(2)) return "open window Letter(" + name + ")";
    return "add Pages(" + name + ") to " + inQuotes(target);
  }
  if (features.deadlyActs && random.oneIn(5)) return random.oneIn(2) ? "quit" : "hang";
  if (features.windowActs && random.oneIn(2)) {
    const std::size_t kind = random.below(5);
    const std::string name = title(random, features);
    if (kind == 0) return "open sheet " + inQuotes(name);
    if (kind == 1) return "close window";
    if (kind == 2) return "retitle " + inQuotes(name);
    if (kind == 3 && !target.empty()) return "remove " + inQuotes(target);
    if (!application.windows.empty()) {
      const std::string& shown = random.pick(application.windows).title;
      if (!shown.empty()) return "show window " + inQuotes(shown);
    }
  }
  if (target.empty()) return random.oneIn(2) ? "toggle" : "choose";
  const std::string text = inQuotes(prose(random, features));
  if (random.oneIn(6)) return "paste";
  return random.oneIn(2) ? "append " + text + " to " + inQuotes(target)
                         : "set " + inQuotes(target) + " " + text;
}

std::string delay(Random& random) {
  const std::int64_t least = random.between(0, 2'000);
  std::string text = "after " + std::to_string(least) + "ms";
  if (random.oneIn(3)) text += ".." + std::to_string(least + random.between(0, 500)) + "ms";
  return text + " ";
}

}  // namespace

std::string reaction(Random& random, const Features& features,
                     const ApplicationSketch& application) {
  const std::string before = features.later && random.oneIn(3) ? delay(random) : "";
  return before + deed(random, features, application);
}

std::vector<WorldLine> someElements(Random& random, const MacSketch& mac, const Place& place,
                                    ApplicationSketch& application) {
  return Drawer(random, mac, application).elementsIn(place, 0);
}

void addReactions(Random& random, const Features& features, const ApplicationSketch& application,
                  std::vector<WorldLine>& lines) {
  for (WorldLine& line : lines) {
    addReactions(random, features, application, line.lines);
    const bool isElement = line.head.starts_with("AX");
    const bool isItem = line.head.starts_with("menu ") && !line.head.ends_with("> -");
    if (!isElement && !isItem) continue;
    if (random.oneIn(isItem ? 2 : 3)) {
      const char* const way = isElement && isField(line)                          ? "submit: "
                              : isElement && random.oneIn(5)                      ? "right: "
                              : features.changing && isElement && random.oneIn(5) ? "double: "
                                                                                  : "press: ";
      std::string text = way + reaction(random, features, application);
      if (random.oneIn(5)) text += "; " + reaction(random, features, application);
      line.options.push_back(std::move(text));
    }
  }
}

}  // namespace soak
