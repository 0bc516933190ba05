#include "simulator/text/application.h"

#include <limits>
#include <utility>

#include "simulator/text/attributes.h"
#include "simulator/world/elements.h"
#include "simulator/world/windows.h"

namespace simulator {

namespace {

using workspace::ActivationPolicy;

struct ApplicationReading {
  ApplicationDraft draft;
  std::optional<std::string> path;
  bool unnamed = false;
  bool unbundled = false;
};

constexpr std::array<Option<ApplicationReading>, 19> applicationOptions = {{
    {"pid",
     [](Words& words, ApplicationReading& reading) {
       reading.draft.application.pid = static_cast<Pid>(
           words.integer("pid", "a process id", 1, std::numeric_limits<Pid>::max()));
     }},
    {"bundle",
     [](Words& words, ApplicationReading& reading) {
       reading.draft.application.bundleIdentifier = words.name("bundle", "a bundle identifier");
     }},
    {"path",
     [](Words& words, ApplicationReading& reading) {
       reading.path = words.text("path", "the quoted path of a bundle");
     }},
    {"unbundled", [](Words&, ApplicationReading& reading) { reading.unbundled = true; }},
    {"unnamed", [](Words&, ApplicationReading& reading) { reading.unnamed = true; }},
    {"chromium",
     [](Words&, ApplicationReading& reading) {
       reading.draft.application.kind = ApplicationKind::chromium;
     }},
    {"appkit",
     [](Words&, ApplicationReading& reading) {
       reading.draft.application.kind = ApplicationKind::appKit;
     }},
    {"accessory",
     [](Words&, ApplicationReading& reading) {
       reading.draft.application.policy = ActivationPolicy::accessory;
     }},
    {"prohibited",
     [](Words&, ApplicationReading& reading) {
       reading.draft.application.policy = ActivationPolicy::prohibited;
     }},
    {"frontmost", [](Words&, ApplicationReading& reading) { reading.draft.frontmost = true; }},
    {"hidden",
     [](Words&, ApplicationReading& reading) { reading.draft.application.hidden = true; }},
    {"no-focused-window",
     [](Words&, ApplicationReading& reading) { reading.draft.withoutFocusedWindow = true; }},
    {"hangs", [](Words&, ApplicationReading& reading) { reading.draft.application.hangs = true; }},
    {"answers",
     [](Words& words, ApplicationReading& reading) {
       words.expect("answers", "after");
       reading.draft.application.answerDelay = words.time("after");
     }},
    {"rejects-enabling",
     [](Words&, ApplicationReading& reading) { reading.draft.application.rejectsEnabling = true; }},
    {"tree",
     [](Words& words, ApplicationReading& reading) {
       words.expect("tree", "after");
       reading.draft.application.treeOnDemand = true;
       reading.draft.application.treeDelay = words.time("after");
     }},
    {"attribute",
     [](Words& words, ApplicationReading& reading) {
       readAttributeOption(words, reading.draft.application.attributes, reading.draft.links);
     },
     true},
    {"failing",
     [](Words& words, ApplicationReading& reading) {
       readFailingOption(words, reading.draft.application.failing);
     },
     true},
    {"pastes",
     [](Words& words, ApplicationReading& reading) {
       words.expect("pastes", "after");
       reading.draft.application.pasteDelay = words.time("after");
     }},
}};

std::string characteristicFile(ApplicationKind kind, const std::string& path,
                               const std::string& name) {
  if (kind == ApplicationKind::appKit) return path + "/Contents/Info.plist";
  return path + "/Contents/Frameworks/" + name +
         " Framework.framework/Resources/chrome_100_percent.pak";
}

constexpr const char* serviceIdentifier = "com.apple.appkit.xpc.openAndSavePanelService";
constexpr const char* servicePath =
    "/System/Library/Frameworks/AppKit.framework/Versions/C/XPCServices/"
    "com.apple.appkit.xpc.openAndSavePanelService.xpc";
constexpr Size panelSize{480, 200};
constexpr const char* nameAtFirst = "Untitled";
constexpr std::int64_t nameLength = 8;

std::vector<Reaction> closing() { return {{closeOwnWindow}}; }

void addButton(Application& application, const Window& panel, const std::string& title, double x) {
  const double y = panel.frame.y + panelSize.height - 40;
  Element& button = addElement(application, panel.element, panel.number,
                               Rect{panel.frame.x + x, y, 80, 24}, "AXButton");
  button.attributes["AXTitle"] = title;
  button.actions = {"AXPress"};
  button.onClick = closing();
}

/// The field for the file's name, which has the keyboard with all of the name selected.
void addNameField(Application& application, const Window& panel) {
  const Rect frame{panel.frame.x + 120, panel.frame.y + 40, 320, 24};
  Element& field = addElement(application, panel.element, panel.number, frame, "AXTextField");
  field.attributes["AXDescription"] = std::string("Save As:");
  field.attributes["AXValue"] = std::string(nameAtFirst);
  field.attributes["AXSelectedTextRange"] = ax::Range{0, nameLength};
  field.onSubmit = closing();
  application.focusedElement = field.id;
}

void fill(Application& application, Window& panel) {
  Element& element = addElement(application, 0, panel.number, panel.frame, "AXWindow");
  element.attributes["AXTitle"] = *panel.title;
  element.attributes["AXSubrole"] = std::string("AXDialog");
  panel.element = application.focusedWindow = element.id;
  application.windows = {element.id};
  addNameField(application, panel);
  addButton(application, panel, "Cancel", 290);
  addButton(application, panel, "Save", 380);
}

WindowNumber readNumber(Words& words, const char* owner) {
  return static_cast<WindowNumber>(
      words.integer(owner, "the number of a window", 1, std::numeric_limits<WindowNumber>::max()));
}

}  // namespace

ApplicationDraft readApplicationLine(Words& words) {
  const std::string name = words.name("app", "a name");
  ApplicationReading reading;
  readOptions(words, applicationOptions, reading);
  Application& application = reading.draft.application;
  if (application.pid == 0) words.fail("an application needs 'pid'");
  if (reading.unbundled && (reading.path || application.bundleIdentifier)) {
    words.fail("an unbundled application has neither 'bundle' nor 'path'");
  }
  if (!reading.unnamed) application.name = name;
  if (!reading.unbundled) {
    application.bundlePath = reading.path.value_or("/Applications/" + name + ".app");
    reading.draft.files.push_back(
        characteristicFile(application.kind, *application.bundlePath, name));
  }
  return std::move(reading.draft);
}

PanelDraft readPanelLine(Words& words, const World& world) {
  PanelDraft draft;
  words.expect("panel", "pid");
  draft.application.pid =
      static_cast<Pid>(words.integer("pid", "a process id", 1, std::numeric_limits<Pid>::max()));
  words.expect("pid", "window");
  draft.window.number = readNumber(words, "window");
  words.expect("window", "over");
  draft.over = readNumber(words, "over");
  const Window* below = findWindow(world, draft.over);
  if (below == nullptr) words.fail("no window " + std::to_string(draft.over) + " stands above");
  draft.application.name = "Open and Save Panel Service";
  draft.application.bundleIdentifier = serviceIdentifier;
  draft.application.bundlePath = servicePath;
  draft.application.policy = workspace::ActivationPolicy::accessory;
  draft.window.owner = draft.application.pid;
  draft.window.title = "Save";
  draft.window.frame = {below->frame.x, below->frame.y, panelSize.width, panelSize.height};
  draft.window.layer = below->layer;
  fill(draft.application, draft.window);
  return draft;
}

}  // namespace simulator
