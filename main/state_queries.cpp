#include "main/state_queries.h"

#include <cmath>
#include <string_view>
#include <utility>
#include <vector>

#include "accessibility/scope.h"
#include "base/geometry.h"
#include "base/numbers.h"
#include "main/replies.h"
#include "platform/ax.h"
#include "platform/quartz.h"
#include "platform/text.h"
#include "platform/window_server.h"

namespace driver {

namespace {

constexpr std::string_view pidPrefix = "pid:";

std::optional<ListedWindow> listed(const windowserver::Window& window) {
  // A list is to look at: a window without a place is still one. Input, which must hit the window,
  // takes only whole bounds (`boundsOf`).
  if (!window.width || !window.height) return std::nullopt;
  const Rect frame{window.x.value_or(0), window.y.value_or(0), *window.width, *window.height};
  if (!isFinite(frame)) return std::nullopt;
  if (frame.width < smallestWindowSide || frame.height < smallestWindowSide) return std::nullopt;
  if (!inScope(window.name)) return std::nullopt;
  return ListedWindow{window.number.value_or(0), window.layer.value_or(0), window.name.value_or(""),
                      frame};
}

Point pointerLocation() {
  const std::optional<quartz::Event> event = quartz::createEvent();
  if (!event) return {};
  const Point point = quartz::location(*event);
  return std::isfinite(point.x) && std::isfinite(point.y) ? point : Point{};
}

}  // namespace

std::optional<workspace::Application> runningApp(const std::string& reference) {
  if (reference.starts_with(pidPrefix)) {
    const auto pid = parseInt32(std::string_view(reference).substr(pidPrefix.size()));
    // Also when there is none: a process that has gone is not to be replaced by a namesake.
    if (pid) return workspace::application(*pid);
  }
  const std::vector<workspace::Application> bundled = workspace::applications(reference);
  if (!bundled.empty()) return bundled.front();
  for (const workspace::Application& app : workspace::applications()) {
    if (app.name && text::equal(*app.name, reference)) return app;
  }
  return std::nullopt;
}

std::vector<ListedWindow> listedWindows(platform::Pid pid) {
  std::vector<ListedWindow> windows;
  const auto list = windowserver::windows(windowserver::Windows::onScreenWithoutDesktop);
  if (!list) return windows;
  for (const windowserver::Window& window : *list) {
    if (window.ownerPid != pid) continue;
    if (std::optional<ListedWindow> entry = listed(window)) windows.push_back(std::move(*entry));
  }
  return windows;
}

Value::List windows(platform::Pid pid) {
  Value::List entries;
  for (ListedWindow& window : listedWindows(pid)) {
    entries.push_back(Value::Object{{"id", window.number},
                                    {"layer", window.layer},
                                    {"title", std::move(window.title)},
                                    {"x", window.frame.x},
                                    {"y", window.frame.y},
                                    {"width", window.frame.width},
                                    {"height", window.frame.height}});
  }
  return entries;
}

bool isRegularApp(platform::Pid pid) {
  return workspace::activationPolicy(pid) == workspace::ActivationPolicy::regular;
}

void permissionsCommand(const Arguments&) {
  const bool accessibility = ax::trusted();
  const bool screenRecording = windowserver::captureAccess();
  emit({{"ok", true}, {"accessibility", accessibility}, {"screenRecording", screenRecording}});
}

void sceneCommand(const Arguments&) {
  const std::optional<workspace::Application> front = workspace::frontmost();
  const Point pointer = pointerLocation();
  emit({{"ok", true},
        {"pid", front ? front->pid : 0},
        {"bundleId", front ? front->bundleIdentifier.value_or("") : ""},
        {"x", pointer.x},
        {"y", pointer.y}});
}

void sessionCommand(const Arguments&) {
  // The system leaves the key out while the screen is not locked. On a Mac that does not tell of
  // its console nobody else can be at it.
  const windowserver::Session session = windowserver::session().value_or(windowserver::Session{});
  emit({{"ok", true},
        {"locked", session.locked.value_or(false)},
        {"onConsole", session.onConsole.value_or(true)}});
}

void windowsCommand(const Arguments& arguments) {
  const std::optional<workspace::Application> app = runningApp(arguments[2]);
  if (!app) {
    emit({{"ok", true}, {"running", false}, {"windows", Value::List{}}});
    return;
  }
  emit({{"ok", true},
        {"running", true},
        {"pid", app->pid},
        {"name", app->name.value_or("")},
        {"bundleId", app->bundleIdentifier.value_or("")},
        {"active", app->active},
        {"windows", windows(app->pid)}});
}

}  // namespace driver
