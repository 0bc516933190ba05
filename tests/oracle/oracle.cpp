#include "tests/oracle/oracle.h"

#include <algorithm>
#include <functional>
#include <set>

#include "tests/oracle/commands.h"
#include "tests/oracle/focus.h"
#include "tests/oracle/texts.h"
#include "tests/oracle/windows.h"

namespace oracle {

namespace {

using Command = std::function<Json(Stage&, const Words&)>;

const char* const lockRemoved =
    "locked-use unlock was removed: SecurityAgent-plugin unlock is blocked by macOS Library "
    "Validation. Use lock-guard / keep-awake instead.";

Command without(Json (*command)(Stage&)) {
  return [command](Stage& stage, const Words&) { return command(stage); };
}

Json removedLock(Stage&, const Words&) { throw Failure{lockRemoved}; }

Json lockNow(Stage& stage, const Words&) {
  const bool can = stage.has("SACLockScreenImmediate", "login");
  if (can) throw NoOpinion{Silence::livesOn};  // a lock that is asked for outlives the run
  return {{"ok", false}};
}

Json focusHold(Stage&, const Words&) {
  return refusal("input focus must be held by a capture session");
}

Json watchInput(Stage& stage, const Words& words) {
  if (!words.empty() && !runningApp(stage, words[0])) throw Failure{"target app is not running"};
  throw NoOpinion{Silence::livesOn};
}

Json livingOn(Stage&, const Words&) { throw NoOpinion{Silence::livesOn}; }

std::map<std::string, Command> commands() {
  std::map<std::string, Command> table = {
      {"permissions", without(permissions)},
      {"scene", without(scene)},
      {"session", without(session)},
      {"windows", windows},
      {"ax-list", axList},
      {"ax-dump", axDump},
      {"ax-find-text", axFindText},
      {"ax-texts-at", axTextsAt},
      {"ax-at", axAt},
      {"ax-popup-items", axPopupItems},
      {"ax-press", axPress},
      {"ax-match", axMatch},
      {"ax-press-match", axPressMatch},
      {"ax-press-exact", axPressExact},
      {"ax-press-child", axPressChild},
      {"ax-press-in-document", axPressInDocument},
      {"ax-insert", axInsert},
      {"ax-focus", axFocus},
      {"ax-focused", axFocused},
      {"ax-set-value", axSetValue},
      {"ax-menu", axMenu},
      {"ax-menubar", axMenubar},
      {"ax-modal", axModal},
      {"ax-modal-press", axModalPress},
      {"ax-slider", axSlider},
      {"reveal", reveal},
      {"bg-click", bgClick},
      {"bg-scroll", bgScroll},
      {"bg-move", bgMove},
      {"bg-drag", bgDrag},
      {"bg-focus-hold", focusHold},
      {"capture", capture},
      {"capture-probe", without(captureProbe)},
      {"focus-release", focusRelease},
      {"bg-key", bgKey},
      {"bg-type", bgType},
      {"bg-paste-files", bgPasteFiles},
      {"watch-input", watchInput},
      {"lock-now", lockNow},
      {"lock-guard", livingOn},
      {"keep-awake", livingOn},
  };
  for (const char* name :
       {"lock-serve", "lock-arm", "lock-disarm", "lock-status", "lock-query", "lock-unlock"}) {
    table[name] = removedLock;
  }
  return table;
}

bool isBackground(const std::string& command) { return command.compare(0, 3, "bg-") == 0; }

bool isInput(const std::string& command) {
  const std::set<std::string> others = {
      "ax-press",  "ax-press-child", "ax-press-exact", "ax-press-match", "ax-press-in-document",
      "ax-insert", "ax-focus",       "ax-set-value",   "ax-menu",        "ax-modal-press",
      "ax-slider", "reveal"};
  return isBackground(command) || others.count(command) != 0;
}

/// Whether input may go where the command wants it to go.
void checkInputContext(Stage& stage, const std::string& command, const Words& words) {
  if (isInput(command) && !sessionUsable(stage)) {
    throw Failure{"the Mac is locked or not on console; background input is unavailable"};
  }
  if (isBackground(command) && !foreground(stage)) {
    throw Failure{"current foreground process is unavailable"};
  }
  if (!isInput(command) || words.empty() || !scopeOf(stage)) return;
  const auto pid = runningApp(stage, words[0]);
  if (!pid || foreground(stage) != *pid) return;
  const auto focused = stage.link({*pid, 0}, "AXFocusedWindow");
  if (!focused || !isWindowInScope(stage, *focused)) {
    throw Failure{
        "another window of the target app currently owns the user's keyboard; background input "
        "will "
        "not switch it"};
  }
}

Json replyTo(Stage& stage, const std::vector<std::string>& arguments) {
  if (arguments.empty()) throw Failure{"usage: driver <command> ..."};
  const std::string& command = arguments[0];
  const Words words(arguments.begin() + 1, arguments.end());
  if (command == "capture-service") {
    if (words.size() != 1) throw Failure{"usage: capture-service <private lock path>"};
    throw NoOpinion{Silence::livesOn};
  }
  requireCaptureAlive(stage);
  checkInputContext(stage, command, words);
  const auto table = commands();
  const auto found = table.find(command);
  if (found == table.end()) throw Failure{"unknown command: " + command};
  return found->second(stage, words);
}

std::vector<std::string> repairedAll(const std::vector<std::string>& arguments) {
  std::vector<std::string> texts;
  for (const std::string& argument : arguments) {
    const std::string text = repaired(argument);
    const bool isPath =
        !arguments.empty() && (arguments[0] == "capture" || arguments[0] == "bg-paste-files");
    if (isPath && text != argument) throw NoOpinion{Silence::oddPath};
    texts.push_back(text);
  }
  return texts;
}

Expectation played(const simulator::Mac& before, const std::vector<std::string>& arguments,
                   const std::map<std::string, std::string>& environment) {
  Stage stage(before, environment);
  Expectation expectation;
  try {
    expectation.output = jsonLine(replyTo(stage, repairedAll(arguments)));
  } catch (const Failure& failure) {
    expectation.status = 1;
    expectation.output = jsonLine(refusal(failure.message));
  }
  if (stage.isExact()) {
    expectation.elapsed = stage.elapsed();
    expectation.effects = comparableEffects(stage.effects());
  }
  return expectation;
}

}  // namespace

std::optional<Expectation> expected(const simulator::Mac& before,
                                    const std::vector<std::string>& arguments,
                                    const std::map<std::string, std::string>& environment,
                                    Silence* why) {
  try {
    return played(before, arguments, environment);
  } catch (const NoOpinion& none) {
    if (why != nullptr) *why = none.why;
    return std::nullopt;
  }
}

}  // namespace oracle
