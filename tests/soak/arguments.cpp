#include "tests/soak/arguments.h"

#include <array>

#include "tests/soak/mac.h"
#include "tests/soak/texts.h"

namespace soak {

namespace {

/// What an argument's words are drawn from.
struct Drawing {
  Random& random;
  const MacSketch& mac;
  const ApplicationSketch& application;
  CommandLine& words;
};

void putApplication(const Drawing& drawing) {
  drawing.words.push_back(address(drawing.random, drawing.application));
}

void putPoint(const Drawing& drawing) {
  const Place place = placeIn(drawing.random, drawing.application);
  const Point point = someWhereIn(drawing.random, place);
  const bool isFraction = drawing.random.oneIn(10);
  drawing.words.push_back(std::to_string(point.x) + (isFraction ? ".5" : ""));
  drawing.words.push_back(std::to_string(point.y));
}

void putNear(const Drawing& drawing) {
  if (drawing.random.oneIn(2)) return putPoint(drawing);
  drawing.words.insert(drawing.words.end(), {"-1", "-1"});
}

std::string someLabel(const Drawing& drawing) {
  const auto& controls = drawing.application.controls;
  if (!controls.empty() && !drawing.random.oneIn(5)) {
    const std::string& known = drawing.random.pick(controls).label;
    if (!known.empty()) return known;
  }
  return label(drawing.random, drawing.mac.features);
}

void putLabel(const Drawing& drawing) { drawing.words.push_back(someLabel(drawing)); }

/// The label of a control of such a role, most often.
void putLabelOf(const Drawing& drawing, std::string_view role) {
  std::vector<const ControlSketch*> known;
  for (const ControlSketch& control : drawing.application.controls) {
    if (control.role.starts_with(role) && !control.label.empty()) known.push_back(&control);
  }
  if (known.empty() || drawing.random.oneIn(6)) return putLabel(drawing);
  drawing.words.push_back(drawing.random.pick(known)->label);
}

void putField(const Drawing& drawing) { putLabelOf(drawing, "AXText"); }
void putRow(const Drawing& drawing) { putLabelOf(drawing, "AXRow"); }
void putGroup(const Drawing& drawing) { putLabelOf(drawing, "AXGroup"); }
void putNamedButton(const Drawing& drawing) { putLabelOf(drawing, "AXButton"); }
void putDocument(const Drawing& drawing) { putLabelOf(drawing, "AXWebArea"); }
void putSlider(const Drawing& drawing) { putLabelOf(drawing, "AXSlider"); }

void putChild(const Drawing& drawing) {
  drawing.words.push_back(drawing.random.oneIn(2) ? "last" : someLabel(drawing));
}

void putText(const Drawing& drawing) {
  drawing.words.push_back(prose(drawing.random, drawing.mac.features));
}

void putLongText(const Drawing& drawing) {
  if (!drawing.random.oneIn(8)) return putText(drawing);
  std::string text;
  const std::size_t pieces = 1 + drawing.random.below(12);
  for (std::size_t i = 0; i < pieces; ++i)
    text += prose(drawing.random, drawing.mac.features) + ", ";
  drawing.words.push_back(std::move(text));
}

void putLines(const Drawing& drawing) {
  drawing.words.push_back(std::to_string(drawing.random.between(-5, 5)));
}

template <std::size_t count>
void putOneOf(const Drawing& drawing, const std::array<std::string_view, count>& choices) {
  drawing.words.emplace_back(drawing.random.pick(choices));
}

void putButton(const Drawing& drawing) {
  putOneOf(drawing, std::array<std::string_view, 4>{"left", "left", "right", "middle"});
}

void putCount(const Drawing& drawing) {
  putOneOf(drawing, std::array<std::string_view, 6>{"1", "2", "2", "3", "0", "two"});
}

void putFile(const Drawing& drawing) {
  putOneOf(drawing, std::array<std::string_view, 4>{"FOLDER/a.png", "FOLDER/a.png",
                                                    "FOLDER/none/a.png", "FOLDER"});
}

void putPath(const Drawing& drawing) {
  putOneOf(drawing, std::array<std::string_view, 5>{"/a.txt", "letter.txt", "../b c.txt",
                                                    "/caf\xC3\xA9", "/a\xFF"});
}

void putPid(const Drawing& drawing) {
  drawing.words.push_back(std::to_string(drawing.application.pid));
}

void putWindow(const Drawing& drawing) {
  const auto& windows = drawing.application.windows;
  const bool isKnown = !windows.empty() && !drawing.random.oneIn(5);
  drawing.words.push_back(std::to_string(isKnown ? drawing.random.pick(windows).number : 77));
}

void putCombination(const Drawing& drawing) {
  putOneOf(drawing, std::array<std::string_view, 18>{
                        "a", "cmd+s", "cmd+v", "shift+a", "ctrl+shift+a", "cmd+shift+alt+ctrl+x",
                        "return", "cmd+shift+s", "escape", "Tab", "cmd+z", "alt+left", "f13", "cmd",
                        "+", "cmd+option+s", "cmd+shift+v", "cmd+shift+a"});
}

void putRole(const Drawing& drawing) {
  putOneOf(drawing, std::array<std::string_view, 4>{"AXRow", "AXRow", "AXRow", "AXCell"});
}

void putWhich(const Drawing& drawing) {
  putOneOf(drawing, std::array<std::string_view, 3>{"only", "last", "lats"});
}

void putSliding(const Drawing& drawing) {
  putOneOf(drawing, std::array<std::string_view, 7>{"increment", "decrement", "7", "0.5", "-3",
                                                    "1000", "ten"});
}

void putMode(const Drawing& drawing) {
  putOneOf(drawing, std::array<std::string_view, 7>{"replace", "replace", "message", "end",
                                                    "new_line", "caret", "ned"});
}

void putOwned(const Drawing& drawing) {
  putOneOf(drawing, std::array<std::string_view, 8>{"[\"hello\"]", "[]", "[\"hello\",\"a\"]", "[1]",
                                                    "{", "[\"hello \"]", "[\"hello\",1]",
                                                    "[\"hello\",\"a\",\"line\\n\"]"});
}

std::string withoutEllipsis(std::string text) {
  for (const std::string_view ellipsis : {"\u2026", "..."}) {
    if (text.ends_with(ellipsis)) text.resize(text.size() - ellipsis.size());
  }
  return text;
}

void putMenuPath(const Drawing& drawing) {
  const auto& menus = drawing.application.menus;
  if (menus.empty() || drawing.random.oneIn(6)) return putLabel(drawing);
  auto path = drawing.random.pick(menus);
  if (drawing.random.oneIn(4)) {
    for (std::string& word : path) word = withoutEllipsis(std::move(word));
  }
  drawing.words.insert(drawing.words.end(), path.begin(), path.end());
}

struct ArgumentKind {
  std::string_view name;
  void (*add)(const Drawing& drawing);
};

constexpr std::array argumentKinds = {
    ArgumentKind{"application", putApplication},
    ArgumentKind{"point", putPoint},
    ArgumentKind{"near", putNear},
    ArgumentKind{"label", putLabel},
    ArgumentKind{"child", putChild},
    ArgumentKind{"text", putText},
    ArgumentKind{"prose", putLongText},
    ArgumentKind{"lines", putLines},
    ArgumentKind{"button", putButton},
    ArgumentKind{"count", putCount},
    ArgumentKind{"file", putFile},
    ArgumentKind{"path", putPath},
    ArgumentKind{"pid", putPid},
    ArgumentKind{"window", putWindow},
    ArgumentKind{"combination", putCombination},
    ArgumentKind{"role", putRole},
    ArgumentKind{"which", putWhich},
    ArgumentKind{"sliding", putSliding},
    ArgumentKind{"mode", putMode},
    ArgumentKind{"owned", putOwned},
    ArgumentKind{"menu", putMenuPath},
    ArgumentKind{"field", putField},
    ArgumentKind{"row", putRow},
    ArgumentKind{"group", putGroup},
    ArgumentKind{"named-button", putNamedButton},
    ArgumentKind{"document", putDocument},
    ArgumentKind{"slider", putSlider},
};

}  // namespace

std::string address(Random& random, const ApplicationSketch& application) {
  const std::size_t kind = random.below(10);
  if (kind == 0) return "pid:" + std::to_string(random.between(-1, 45));
  if (kind < 3 || (application.name.empty() && application.bundle.empty())) {
    return applicationText(application);
  }
  if (application.name.empty() || (kind < 6 && !application.bundle.empty())) {
    return application.bundle;
  }
  return application.name;
}

void addArgument(Random& random, std::string_view kind, const MacSketch& mac,
                 const ApplicationSketch& application, CommandLine& words) {
  for (const ArgumentKind& each : argumentKinds) {
    if (each.name == kind) each.add({random, mac, application, words});
  }
}

}  // namespace soak
