#include "tests/oracle/commands.h"
#include "tests/oracle/opinion.h"
#include "tests/oracle/texts.h"
#include "tests/oracle/windows.h"

namespace oracle {

Json refusal(const std::string& error) { return {{"ok", false}, {"error", error}}; }

void require(const Words& words, std::size_t count, const std::string& usage) {
  if (words.size() < count) throw Failure{"usage: " + usage};
}

double coordinate(const Words& words, std::size_t index) {
  const auto number = index < words.size() ? realNumber(words[index]) : std::nullopt;
  // The reference counts from the tool's own path.
  if (!number) throw Failure{"missing numeric arg " + std::to_string(index + 2)};
  return *number;
}

Point pointAt(const Words& words, std::size_t index) {
  const double x = coordinate(words, index);
  return {x, coordinate(words, index + 1)};
}

std::string inQuotes(const std::string& text) { return "\"" + text + "\""; }

Json permissions(Stage& stage) {
  return {{"ok", true},
          {"accessibility", stage.world().accessibilityAllowed},
          {"screenRecording", stage.world().screenRecordingAllowed}};
}

Json scene(Stage& stage) {
  const Pid front = stage.world().frontmost;
  const bool runs = stage.application(front) != nullptr;
  return {{"ok", true},
          {"pid", runs ? front : 0},
          {"bundleId", bundleOf(stage, front)},
          {"x", stage.world().pointer.x},
          {"y", stage.world().pointer.y}};
}

Json session(Stage& stage) {
  const auto& session = stage.world().session;
  const bool locked = session.readable && session.locked.value_or(false);
  const bool onConsole = !session.readable || session.onConsole.value_or(true);
  return {{"ok", true}, {"locked", locked}, {"onConsole", onConsole}};
}

Json windows(Stage& stage, const Words& words) {
  require(words, 1, "windows <bundleId|name>");
  const auto pid = runningApp(stage, words[0]);
  if (!pid) return {{"ok", true}, {"running", false}, {"windows", Json::array()}};
  Json entries = Json::array();
  for (const Listed& window : listedWindows(stage, true)) {
    if (window.owner != *pid || window.frame.width < 40 || window.frame.height < 40) continue;
    if (!inScope(stage, window.name)) continue;
    Json entry = frameJson(window.frame);
    entry["id"] = window.number;
    entry["layer"] = window.layer;
    entry["title"] = window.name.value_or("");
    entries.push_back(entry);
  }
  return {{"ok", true},
          {"running", true},
          {"pid", *pid},
          {"name", nameOf(stage, *pid)},
          {"bundleId", bundleOf(stage, *pid)},
          {"active", *pid == stage.world().frontmost},
          {"windows", entries}};
}

}  // namespace oracle
