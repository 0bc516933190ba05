#include "tests/oracle/windows.h"

#include <algorithm>
#include <limits>

#include "tests/oracle/texts.h"

namespace oracle {

std::optional<WindowNumber> Listed::window() const {
  if (number < 0 || number > std::numeric_limits<WindowNumber>::max()) return std::nullopt;
  return static_cast<WindowNumber>(number);
}

namespace {

Listed listed(const Stage& stage, const simulator::Window& window) {
  Listed entry{window.listedNumber.value_or(window.number), window.owner, window.layer,
               std::nullopt, window.frame};
  if (stage.world().screenRecordingAllowed && window.title) entry.name = repaired(*window.title);
  return entry;
}

std::optional<std::string> repairedIf(const std::optional<std::string>& text) {
  if (!text) return std::nullopt;
  return repaired(*text);
}

}  // namespace

std::vector<Listed> listedWindows(const Stage& stage, bool onScreenOnly) {
  std::vector<Listed> entries;
  for (const auto& window : stage.world().windows) {
    if (window.onScreen || !onScreenOnly) entries.push_back(listed(stage, window));
  }
  return entries;
}

std::optional<Pid> runningApp(const Stage& stage, const std::string& text) {
  if (text.compare(0, 4, "pid:") == 0) {
    const auto pid = wholeNumber(text.substr(4), std::numeric_limits<Pid>::min(),
                                 std::numeric_limits<Pid>::max());
    if (pid) {
      const auto* found = stage.application(static_cast<Pid>(*pid));
      return found == nullptr ? std::nullopt : std::optional(found->pid);
    }
  }
  for (const auto& each : stage.world().applications) {
    if (each.running && repairedIf(each.bundleIdentifier) == text) return each.pid;
  }
  for (const auto& each : stage.world().applications) {
    if (each.running && each.name && same(repaired(*each.name), text)) return each.pid;
  }
  return std::nullopt;
}

std::string nameOf(const Stage& stage, Pid pid) {
  const auto* found = stage.application(pid);
  return found == nullptr ? "" : repairedIf(found->name).value_or("");
}

std::string bundleOf(const Stage& stage, Pid pid) {
  const auto* found = stage.application(pid);
  return found == nullptr ? "" : repairedIf(found->bundleIdentifier).value_or("");
}

bool isHidden(const Stage& stage, Pid pid) {
  const auto* found = stage.application(pid);
  return found != nullptr && found->hidden;
}

bool isChromium(const Stage& stage, Pid pid) {
  const auto* found = stage.application(pid);
  if (found == nullptr || !found->bundlePath) return false;
  const std::string folder = *found->bundlePath + "/Contents/Frameworks/";
  const std::string tail = "/Resources/chrome_100_percent.pak";
  const auto& files = stage.world().files;
  return std::any_of(files.begin(), files.end(), [&](const std::string& file) {
    if (file.compare(0, folder.size(), folder) != 0) return false;
    const std::size_t end = file.find('/', folder.size());
    return end != std::string::npos && file.substr(end) == tail;
  });
}

std::optional<Pid> foreground(const Stage& stage) {
  const bool canTell = stage.has("GetFrontProcess", "ApplicationServices") &&
                       stage.has("GetProcessPID", "ApplicationServices");
  if (!canTell || stage.application(stage.world().frontmost) == nullptr) return std::nullopt;
  return stage.world().frontmost;
}

bool sessionUsable(const Stage& stage) {
  const auto& session = stage.world().session;
  if (!session.readable) return true;
  return session.locked != true && session.onConsole.value_or(true);
}

std::optional<std::string> scopeOf(const Stage& stage) {
  const auto value = stage.variable("CU_WINDOW");
  if (!value || value->empty()) return std::nullopt;
  return lowered(repaired(*value));
}

bool inScope(const Stage& stage, const std::optional<std::string>& title) {
  const auto scope = scopeOf(stage);
  if (!scope) return true;
  std::string rest = trimmedBlanks(lowered(title.value_or("")));
  const std::string prefix = "[extension development host] ";
  if (rest.compare(0, prefix.size(), prefix) == 0) rest = rest.substr(prefix.size());
  for (const std::string& piece : splitAt(rest, " — ")) {
    if (same(trimmedBlanks(piece), *scope)) return true;
  }
  return false;
}

bool isWindowInScope(Stage& stage, const Element& window) {
  if (!scopeOf(stage)) return true;
  const WindowNumber number = stage.windowOf(window);
  const auto* found = number == 0 ? nullptr : simulator::findWindow(stage.world(), number);
  if (found != nullptr) {
    const Listed entry = listed(stage, *found);
    if (entry.number == number) return inScope(stage, entry.name);
  }
  return inScope(stage, stage.text(window, "AXTitle"));
}

std::vector<Element> windowsInScope(Stage& stage, Pid pid) {
  std::vector<Element> kept;
  for (const Element& window : stage.list({pid, 0}, "AXWindows").value_or(std::vector<Element>())) {
    if (isWindowInScope(stage, window)) kept.push_back(window);
  }
  return kept;
}

std::optional<TargetWindow> windowAt(const Stage& stage, Pid pid, Point point) {
  for (const Listed& entry : listedWindows(stage, true)) {
    if (entry.owner != pid || entry.layer >= 1000) continue;
    if (!entry.name.value_or("").empty() && !inScope(stage, entry.name)) continue;
    if (!holds(entry.frame, point)) continue;
    const auto number = entry.window();
    if (!number) return std::nullopt;
    return TargetWindow{*number, entry.frame};
  }
  return std::nullopt;
}

bool holds(const Rect& frame, Point point) {
  return point.x >= frame.x && point.x < frame.x + frame.width && point.y >= frame.y &&
         point.y < frame.y + frame.height;
}

Json frameJson(const Rect& frame) {
  return {{"x", frame.x}, {"y", frame.y}, {"width", frame.width}, {"height", frame.height}};
}

}  // namespace oracle
