#pragma once

#include <functional>
#include <optional>

#include "platform/ax.h"
#include "platform/types.h"

/// Focus without activation, by records to the window server.
namespace driver::Sky {

/// What has the keyboard of a process. Asked in one message.
struct KeyboardFocus {
  std::optional<ax::Element> window;
  bool hasElement = false;
};
KeyboardFocus keyboardFocus(platform::Pid pid);

/// Gives input focus to a window of a process, or takes it back, and waits 40 ms. True when the
/// window server accepted the record; when a private entry point is missing or the process has no
/// serial number, false at once.
bool focus(platform::Pid pid, platform::WindowNumber window, bool give);

/// Makes `window` the key window of `pid` without activating it. True at once when it already is
/// and has a focused element, else after 300 ms when the window server accepted both records.
/// `mayChange` is asked last of all before the records; when it says no, there are none, and false.
bool makeKey(
    platform::Pid pid, platform::WindowNumber window,
    const std::function<bool()>& mayChange = [] { return true; });

}  // namespace driver::Sky
