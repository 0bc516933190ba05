#include "platform/window_server.h"

#include "base/utf8.h"
#include "platform/simulated/channel.h"

namespace windowserver {

using platform::Function;
using simulated::askFor;

namespace {

using List = std::optional<std::vector<Window>>;

List repaired(List windows) {
  if (!windows) return windows;
  for (Window& window : *windows) {
    if (window.name) window.name = driver::repairedUtf8(*window.name);
  }
  return windows;
}

}  // namespace

List windows(Windows which) { return repaired(askFor<List>(Function::windows, which)); }

List description(platform::WindowNumber number) {
  return repaired(askFor<List>(Function::windowDescription, number));
}

std::optional<Session> session() { return askFor<std::optional<Session>>(Function::session); }

std::optional<DisplayMode> displayMode(DisplayId display) {
  return askFor<std::optional<DisplayMode>>(Function::displayMode, display);
}

std::int64_t shieldingLevel() { return askFor<std::int64_t>(Function::shieldingLevel); }

bool captureAccess() { return askFor<bool>(Function::captureAccess); }

}  // namespace windowserver
