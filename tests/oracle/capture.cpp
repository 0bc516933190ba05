#include <algorithm>
#include <cmath>
#include <filesystem>

#include "simulator/world/sharing.h"
#include "tests/oracle/commands.h"
#include "tests/oracle/opinion.h"
#include "tests/oracle/texts.h"
#include "tests/oracle/windows.h"

namespace oracle {

namespace {

using simulator::Window;
using WindowList = std::vector<const Window*>;

std::optional<Rect> overlap(const Rect& a, const Rect& b) {
  const double left = std::max(a.x, b.x);
  const double top = std::max(a.y, b.y);
  const double right = std::min(a.x + a.width, b.x + b.width);
  const double bottom = std::min(a.y + a.height, b.y + b.height);
  if (!(right > left) || !(bottom > top)) return std::nullopt;
  return Rect{left, top, right - left, bottom - top};
}

double areaOf(const Rect& rect) { return rect.width * rect.height; }

Rect around(const WindowList& windows) {
  Rect all = windows[0]->frame;
  for (const Window* window : windows) {
    const double right = std::max(all.x + all.width, window->frame.x + window->frame.width);
    const double bottom = std::max(all.y + all.height, window->frame.y + window->frame.height);
    all.x = std::min(all.x, window->frame.x);
    all.y = std::min(all.y, window->frame.y);
    all.width = right - all.x;
    all.height = bottom - all.y;
  }
  return all;
}

std::string shownTitle(const Window& window) { return repaired(window.title.value_or("")); }

/// What the system lets be captured, in its order.
WindowList shareable(const Stage& stage) {
  WindowList windows;
  for (const Window& window : stage.world().windows) {
    if (window.onScreen && window.capturable) windows.push_back(&window);
  }
  return windows;
}

/// The application's windows that the agent may see.
WindowList keptWindows(const Stage& stage, Pid pid) {
  WindowList all;
  for (const Window* window : shareable(stage)) {
    const bool isLarge = window->frame.width >= 40 && window->frame.height >= 40;
    if (window->owner == pid && window->layer < 1000 && isLarge) all.push_back(window);
  }
  if (!scopeOf(stage)) return all;
  WindowList titled;
  for (const Window* window : all) {
    if (inScope(stage, shownTitle(*window))) titled.push_back(window);
  }
  WindowList kept = titled;
  for (const Window* window : all) {
    const bool isKept = std::find(titled.begin(), titled.end(), window) != titled.end();
    const bool touches = std::any_of(titled.begin(), titled.end(), [&](const Window* each) {
      return overlap(each->frame, window->frame).has_value();
    });
    if (shownTitle(*window).empty() && !isKept && touches) kept.push_back(window);
  }
  return kept;
}

const Window* mainWindow(const Stage& stage, Pid pid, const WindowList& kept) {
  double threshold = 0;
  for (const Window* window : kept) {
    if (window->layer == 0) threshold = std::max(threshold, 0.25 * areaOf(window->frame));
  }
  for (const Listed& entry : listedWindows(stage, true)) {
    if (entry.owner != pid || entry.layer != 0 || !inScope(stage, entry.name)) continue;
    for (const Window* window : kept) {
      if (window->number == entry.number && areaOf(window->frame) >= threshold) return window;
    }
  }
  const Window* chosen = kept[0];
  for (const Window* window : kept) {
    const bool sameKind = (chosen->layer == 0) == (window->layer == 0);
    const bool better =
        sameKind ? areaOf(window->frame) > areaOf(chosen->frame) : window->layer == 0;
    if (better) chosen = window;
  }
  return chosen;
}

const simulator::Display& displayOf(const Stage& stage, const Window& window) {
  const auto& displays = stage.world().displays;
  if (displays.empty()) throw Failure{"no display"};
  const simulator::Display* chosen = &displays[0];
  const auto shared = [&](const simulator::Display& display) {
    const auto part = overlap(display.frame, window.frame);
    return part ? areaOf(*part) : 0;
  };
  for (const auto& display : displays) {
    if (shared(display) > shared(*chosen)) chosen = &display;
  }
  return *chosen;
}

/// Small windows of helper processes that float over the application.
WindowList helpersOver(const Stage& stage, Pid pid, const Rect& covered) {
  WindowList helpers;
  for (const Window* window : shareable(stage)) {
    const auto* owner = stage.application(window->owner);
    if (owner == nullptr || owner->pid == pid) continue;
    if (bundleOf(stage, owner->pid).compare(0, 19, "com.zentrove.desk.") == 0) continue;
    if (owner->policy == workspace::ActivationPolicy::regular) continue;
    if (window->layer < 0 || window->layer > 19) continue;
    if (window->frame.width < 20 || window->frame.height < 20) continue;
    if (overlap(window->frame, covered)) helpers.push_back(window);
  }
  return helpers;
}

Json windowJson(const Stage& stage, const Window& window) {
  Json entry = frameJson(window.frame);
  entry["title"] = shownTitle(window);
  entry["owner"] = nameOf(stage, window.owner);
  entry["layer"] = window.layer;
  entry["bundle"] = bundleOf(stage, window.owner);
  return entry;
}

Json captured(const Stage& stage, Pid pid, const WindowList& kept) {
  const Window* main = mainWindow(stage, pid, kept);
  const auto& display = displayOf(stage, *main);
  WindowList drawn;
  Json elsewhere = Json::array();
  for (const Window* window : kept) {
    if (overlap(window->frame, display.frame)) {
      drawn.push_back(window);
    } else {
      elsewhere.push_back(shownTitle(*window));
    }
  }
  if (drawn.empty()) throw Failure{"no window on the display"};
  const WindowList helpers = helpersOver(stage, pid, around(drawn));
  drawn.insert(drawn.end(), helpers.begin(), helpers.end());
  Json windows = Json::array();
  for (const Window* window : drawn) windows.push_back(windowJson(stage, *window));
  Json anchor = frameJson(main->frame);
  anchor["id"] = main->number;
  return {{"ok", true},
          {"running", true},
          {"name", nameOf(stage, pid)},
          {"active", pid == stage.world().frontmost},
          {"rect", frameJson(*overlap(around(drawn), display.frame))},
          {"anchor", anchor},
          {"windows", windows},
          {"otherDisplayWindows", elsewhere}};
}

/// A path in a folder that is there can be written, and one in another cannot.
void requireWritable(const std::string& path) {
  const std::filesystem::path file(path);
  if (!file.is_absolute() || std::filesystem::exists(file)) {
    throw NoOpinion{Silence::outsideTheMac};
  }
  if (!std::filesystem::is_directory(file.parent_path())) throw Failure{"cannot write " + path};
}

}  // namespace

Json capture(Stage& stage, const Words& words) {
  require(words, 2, "capture <app> <out.png>");
  const auto pid = runningApp(stage, words[0]);
  if (!pid) return {{"ok", true}, {"running", false}};
  if (!stage.world().screenRecordingAllowed) return refusal(simulator::captureDeclined);
  const WindowList kept = keptWindows(stage, *pid);
  if (kept.empty()) {
    return {{"ok", true}, {"running", true}, {"rect", nullptr}, {"windows", Json::array()}};
  }
  stage.requireNoQuestion();
  const Json reply = captured(stage, *pid, kept);
  stage.noteFile(words[1]);
  requireWritable(words[1]);
  return reply;
}

Json captureProbe(Stage& stage) {
  if (!stage.world().screenRecordingAllowed) return refusal(simulator::captureDeclined);
  if (stage.world().displays.empty()) throw Failure{"no display"};
  stage.requireNoQuestion();
  return {{"ok", true}};
}

}  // namespace oracle
