#include "tests/soak/habits.h"

#include <array>

#include "tests/soak/texts.h"

namespace soak {

namespace {

/// What a field makes of a text that is written. Of some lists one stands alone.
void addFieldHabit(Random& random, WorldLine& line) {
  constexpr std::array<std::string_view, 5> transforms = {"upper", "lower", "trim", "one-line",
                                                          "first 4 characters"};
  constexpr std::array<std::string_view, 3> written = {"AXValue", "AXSelectedText",
                                                       "AXSelectedTextRange"};
  switch (random.below(10)) {
    case 0:
      line.options.push_back("transform " + std::string(random.pick(transforms)));
      break;
    case 1:
      line.options.emplace_back("ignores writes");
      break;
    case 2:
      line.options.emplace_back("half of writes");
      break;
    case 3:
      line.options.push_back("late " + std::to_string(random.between(1, 400)) + "ms");
      break;
    case 4:
      line.options.emplace_back("shows placeholder");
      break;
    case 5:
      line.options.emplace_back(random.oneIn(2) ? "composer" : "composer without value");
      break;
    case 6:
      line.options.emplace_back("takes files");
      break;
    case 7:
      line.options.emplace_back("subrole AXSecureTextField");
      break;
    case 8: {
      const std::size_t start = random.below(6);
      const std::size_t length = random.below(4);
      line.options.push_back("selection " + std::to_string(start) + "+" + std::to_string(length));
      if (random.oneIn(3)) line.options.back() = "attribute AXSelectedTextRange range 1+90";
      break;
    }
    default:
      line.options.push_back("rejects " + std::string(random.pick(written)));
      if (random.oneIn(2)) line.options.back() += " -25200";
      break;
  }
}

void addToField(Random& random, const Features& features, WorldLine& line) {
  if (!random.oneIn(3)) {
    line.options.push_back("value " + inQuotes(prose(random, features)));
  }
  if (random.oneIn(4)) {
    line.options.push_back("placeholder " + inQuotes(prose(random, features)));
  }
  if (features.fieldHabits && random.oneIn(2)) addFieldHabit(random, line);
}

void addToSlider(Random& random, WorldLine& line) {
  const std::int64_t least = random.between(-10, 10);
  const std::int64_t most = least + random.between(1, 100);
  std::string range = "range " + std::to_string(least) + ".." + std::to_string(most);
  if (random.oneIn(2)) range += " step " + std::to_string(random.between(1, 7));
  line.options.push_back(std::move(range));
  line.options.push_back("value " + std::to_string(random.between(least, most)));
}

/// One lie a line: what is told twice would be refused.
void addLie(Random& random, WorldLine& line) {
  constexpr std::array<std::string_view, 16> lies = {"attribute AXSize size -1x-1",
                                                     "attribute AXPosition point nan,0",
                                                     "attribute AXPosition point 1e300,1e300",
                                                     "attribute AXHidden true",
                                                     "attribute AXNumberOfCharacters -1",
                                                     "attribute AXFocused true",
                                                     "attribute AXWindow opaque 7",
                                                     "attribute AXRole \"AXUnknown\"",
                                                     "attribute AXRole 3",
                                                     "attribute AXChildren opaque 9",
                                                     "attribute AXParent \"nobody\"",
                                                     "attribute AXFrame rect 0,0,10x10",
                                                     "attribute AXRoleDescription \"\\xFF\"",
                                                     "attribute AXEditable true",
                                                     "attribute AXVisibleChildren elements",
                                                     "attribute AXIdentifier \"x\""};
  line.options.emplace_back(random.pick(lies));
}

void addFailure(Random& random, WorldLine& line) {
  constexpr std::array<std::string_view, 10> names = {
      "AXRole", "AXTitle",  "AXValue",       "AXChildren", "AXPosition",
      "AXSize", "AXParent", "AXDescription", "AXEnabled",  "AXSelectedTextRange"};
  constexpr std::array<std::string_view, 5> codes = {"-25200", "-25202", "-25204", "-25205",
                                                     "-25212"};
  const std::string_view name = random.pick(names);
  const std::string_view code = random.pick(codes);
  line.options.push_back("failing " + std::string(name) + " " + std::string(code));
}

}  // namespace

void addHabits(Random& random, const Features& features, std::string_view role, WorldLine& line) {
  const bool isText = role == "AXStaticText";
  const bool takesText = role.starts_with("AXText") || role == "AXSearchField";
  if (takesText || role == "AXComboBox") {
    addToField(random, features, line);
  } else if (isText) {
    if (!random.oneIn(5)) {
      line.options.push_back("value " + inQuotes(prose(random, features)));
    }
  } else if (role == "AXSlider") {
    if (!random.oneIn(8)) addToSlider(random, line);
  } else if (role == "AXPopUpButton") {
    const std::string first = inQuotes(label(random, features));
    const std::string second = inQuotes(label(random, features));
    line.options.push_back("choices " + first + " " + second);
  }
}

void addCommonHabits(Random& random, const Features& features, WorldLine& line) {
  if (random.oneIn(12)) line.options.emplace_back("disabled");
  if (random.oneIn(12)) {
    line.options.push_back("help " + inQuotes(label(random, features)));
  }
  if (random.oneIn(16)) {
    line.options.emplace_back(random.oneIn(2) ? "actions none" : "actions AXPress,AXShowMenu");
  }
  if (random.oneIn(20)) line.options.emplace_back("replying -25204");
  if (!features.lies) return;
  if (random.oneIn(4)) addLie(random, line);
  if (random.oneIn(4)) addFailure(random, line);
}

}  // namespace soak
