#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "input/target_window.h"
#include "main/arguments.h"
#include "platform/types.h"

/// Who has the user's input, and what was given of it: the process in front, focus that a capture
/// session holds, focus that one input borrows.
namespace driver {

/// The process in front, asked afresh; none when the system does not tell.
std::optional<platform::Pid> foregroundPID();

inline constexpr std::string_view invalidFocusRelease = "invalid focus release";

/// True when a capture session, of this process or of another, holds the process's input focus:
/// then commands neither give it nor take it back.
bool inputFocusHeld(platform::Pid pid);

/// Ends one hold of this process, or all of them. With the last, focus is taken back, unless the
/// process is in front or the foreground is unknown. Without a hold nothing is done.
void releaseInputFocus(platform::Pid pid, bool all = false);

/// Notes a hold of this process on the focus that `window` of the process `pid` is going to be
/// given. A holder that `renews` its own hold only moves it to the window, if there still is one.
/// True when the process was held before.
bool noteHeldFocus(platform::Pid pid, platform::WindowNumber window, bool renews);

/// How many processes are held.
std::size_t heldFocusCount();

/// Ends all holds of this process, as it ends. Comes back when nothing is being given back any
/// more, by other flows either.
void releaseAllInputFocus();

/// For whom a window was given focus.
enum class FocusGiver { hold, pointerInput, keyboardInput };

/// Takes back the focus that a window was given, unless its process has come to the front, where it
/// is the user's: then false. The focus of one input also stays when a session has come to hold it.
/// A foreground that the system does not tell counts as another process after an input, and as this
/// one after a hold.
bool takeFocusBack(FocusGiver giver, platform::Pid pid, platform::WindowNumber window);

/// Makes a window key, unless its process has come to the front, where the key window is the user's
/// choice. False when it could not be done.
bool makeKeyInBackground(platform::Pid pid, platform::WindowNumber window);

/// "focus-release": takes back the focus that another process of this tool left behind.
void focusReleaseCommand(const Arguments& arguments);

enum class PointerFocus {
  notNeeded,  // the target is in front, or a capture session holds its focus
  given,
  unavailable,
};

/// Gives the window input focus for one pointer input where that is needed. After `given` the
/// caller calls `endPointerFocus`; should the run fail before, focus is taken back all the same.
PointerFocus beginPointerFocus(platform::Pid pid, const TargetWindow& window);

/// After `given`: pauses, then takes focus back, unless it has come to be held or the target has
/// come to the front. Otherwise nothing.
void endPointerFocus(PointerFocus focus, std::uint32_t pauseMicroseconds);

}  // namespace driver
