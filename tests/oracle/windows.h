#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/oracle/json_line.h"
#include "tests/oracle/stage.h"

/// Applications and windows as the system tells them, the session, and the window scope.
namespace oracle {

/// A window as the window server lists it.
struct Listed {
  std::int64_t number = 0;
  Pid owner = 0;
  std::int64_t layer = 0;
  std::optional<std::string> name;
  Rect frame;

  /// Its number when it can be one; none for what names no window.
  std::optional<WindowNumber> window() const;
};

/// Front to back.
std::vector<Listed> listedWindows(const Stage& stage, bool onScreenOnly);

/// The running application that the text names.
std::optional<Pid> runningApp(const Stage& stage, const std::string& text);

std::string nameOf(const Stage& stage, Pid pid);
std::string bundleOf(const Stage& stage, Pid pid);
bool isHidden(const Stage& stage, Pid pid);
bool isChromium(const Stage& stage, Pid pid);

/// The front process, asked through the private functions.
std::optional<Pid> foreground(const Stage& stage);

bool sessionUsable(const Stage& stage);

/// The window scope; none when there is none.
std::optional<std::string> scopeOf(const Stage& stage);

/// Whether a window of this title is in the scope.
bool inScope(const Stage& stage, const std::optional<std::string>& title);
bool isWindowInScope(Stage& stage, const Element& window);

/// The application's windows in the scope, in its own order.
std::vector<Element> windowsInScope(Stage& stage, Pid pid);

struct TargetWindow {
  WindowNumber number = 0;
  Rect frame;
};

/// The frontmost window of the application under the point.
std::optional<TargetWindow> windowAt(const Stage& stage, Pid pid, Point point);

bool holds(const Rect& frame, Point point);
Json frameJson(const Rect& frame);

}  // namespace oracle
