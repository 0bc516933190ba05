#include "simulator/text/application.h"

#include <limits>
#include <utility>

#include "simulator/text/attributes.h"

namespace simulator {

namespace {

using workspace::ActivationPolicy;

struct Reading {
  ApplicationDraft draft;
  std::optional<std::string> path;
  bool unnamed = false;
  bool unbundled = false;
};

constexpr std::array<Option<Reading>, 19> options = {{
    {"pid",
     [](Words& words, Reading& reading) {
       reading.draft.application.pid = static_cast<Pid>(
           words.integer("pid", "a process id", 1, std::numeric_limits<Pid>::max()));
     }},
    {"bundle",
     [](Words& words, Reading& reading) {
       reading.draft.application.bundleIdentifier = words.name("bundle", "a bundle identifier");
     }},
    {"path",
     [](Words& words, Reading& reading) {
       reading.path = words.text("path", "the quoted path of a bundle");
     }},
    {"unbundled", [](Words&, Reading& reading) { reading.unbundled = true; }},
    {"unnamed", [](Words&, Reading& reading) { reading.unnamed = true; }},
    {"chromium",
     [](Words&, Reading& reading) { reading.draft.application.kind = ApplicationKind::chromium; }},
    {"appkit",
     [](Words&, Reading& reading) { reading.draft.application.kind = ApplicationKind::appKit; }},
    {"accessory",
     [](Words&, Reading& reading) {
       reading.draft.application.policy = ActivationPolicy::accessory;
     }},
    {"prohibited",
     [](Words&, Reading& reading) {
       reading.draft.application.policy = ActivationPolicy::prohibited;
     }},
    {"frontmost", [](Words&, Reading& reading) { reading.draft.frontmost = true; }},
    {"hidden", [](Words&, Reading& reading) { reading.draft.application.hidden = true; }},
    {"no-focused-window",
     [](Words&, Reading& reading) { reading.draft.withoutFocusedWindow = true; }},
    {"hangs", [](Words&, Reading& reading) { reading.draft.application.hangs = true; }},
    {"answers",
     [](Words& words, Reading& reading) {
       words.expect("answers", "after");
       reading.draft.application.answerDelay = words.time("after");
     }},
    {"rejects-enabling",
     [](Words&, Reading& reading) { reading.draft.application.rejectsEnabling = true; }},
    {"tree",
     [](Words& words, Reading& reading) {
       words.expect("tree", "after");
       reading.draft.application.treeOnDemand = true;
       reading.draft.application.treeDelay = words.time("after");
     }},
    {"attribute",
     [](Words& words, Reading& reading) {
       readAttributeOption(words, reading.draft.application.attributes, reading.draft.links);
     },
     true},
    {"failing",
     [](Words& words, Reading& reading) {
       readFailingOption(words, reading.draft.application.failing);
     },
     true},
    {"pastes",
     [](Words& words, Reading& reading) {
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

}  // namespace

ApplicationDraft readApplicationLine(Words& words) {
  const std::string name = words.name("app", "a name");
  Reading reading;
  readOptions(words, options, reading);
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

}  // namespace simulator
