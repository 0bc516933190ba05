#include "simulator/text/application.h"

#include <limits>
#include <utility>

#include "simulator/text/attributes.h"
#include "simulator/world/panels.h"

namespace simulator {

namespace {

using workspace::ActivationPolicy;

struct ApplicationReading {
  ApplicationDraft draft;
  std::optional<std::string> path;
  bool unnamed = false;
  bool unbundled = false;
};

constexpr std::array<Option<ApplicationReading>, 20> applicationOptions = {{
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
    {"tracks",
     [](Words& words, ApplicationReading& reading) {
       words.expect("tracks", "menus");
       reading.draft.application.tracksMenus = true;
     }},
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
  PanelService& service = draft.service;
  words.expect("panel", "pid");
  service.pid =
      static_cast<Pid>(words.integer("pid", "a process id", 1, std::numeric_limits<Pid>::max()));
  words.expect("pid", "window");
  service.number = readNumber(words, "window");
  words.expect("window", "over");
  service.over = readNumber(words, "over");
  if (findWindow(world, service.over) == nullptr) {
    words.fail("no window " + std::to_string(service.over) + " stands above");
  }
  draft.closed = words.take("closed");
  draft.application.pid = service.pid;
  draft.application.name = "Open and Save Panel Service";
  draft.application.bundleIdentifier = serviceIdentifier;
  draft.application.bundlePath = servicePath;
  draft.application.policy = workspace::ActivationPolicy::accessory;
  return draft;
}

}  // namespace simulator
